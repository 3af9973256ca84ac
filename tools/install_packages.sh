#!/usr/bin/env bash
# Installs what is missing of the Debian packages of some groups.
# usage: install_packages.sh GROUP...        build, check, screen, faults, fuzz or package
#        install_packages.sh --formatter     tells which program lays the code out
set -euo pipefail

# One version by name: others lay the same code out differently.
formatter=clang-format-14
if [[ ${1:-} == --formatter ]]; then
    echo "$formatter"
    exit
fi

as_root=(env DEBIAN_FRONTEND=noninteractive)
[[ $(id -u) -eq 0 ]] || as_root=(sudo "${as_root[@]}")

# The package of libFuzzer and the sanitizers, which has the version of the archive's clang in its name.
fuzzer_runtime() {
    apt-cache depends clang 2>/dev/null | sed -n 's/^ *Depends: clang-\([0-9]*\)$/libclang-rt-\1-dev/p'
}

packages=()
optional=() # not every release has them
for group in "$@"; do
    case $group in
        build)
            packages+=(g++ cmake ninja-build python3 qt6-base-dev libicu-dev libpng-dev
                libxml2-dev nlohmann-json3-dev libgtest-dev fonts-dejavu-core pkg-config libhunspell-dev libxxhash-dev)
            ;;
        check)
            packages+=(dpkg-dev gettext gnustep-base-runtime python3-polib
                appstream desktop-file-utils shared-mime-info libglib2.0-bin dbus-daemon
                at-spi2-core python3-gi gir1.2-atspi-2.0)
            optional+=("$formatter" qt6-l10n-tools translate-toolkit)
            ;;
        # A virtual screen, and what uses the program on it.
        screen) packages+=(xvfb xauth openbox xdotool imagemagick xclip) ;;
        # Lets system calls fail one by one; tests/faults does the rest without it.
        faults) packages+=(strace) ;;
        package)
            packages+=(build-essential git debhelper fakeroot lintian cmake ninja-build pkgconf python3 qt6-base-dev
                libicu-dev libpng-dev libxml2-dev nlohmann-json3-dev libhunspell-dev libxxhash-dev)
            ;;
        fuzz)
            if command -v apt-get >/dev/null && [[ -z $(fuzzer_runtime) ]]; then
                "${as_root[@]}" apt-get update # the names are not known yet
            fi
            packages+=(clang "$(fuzzer_runtime)")
            ;;
        *)
            echo "install_packages.sh: no group of packages named $group" >&2
            exit 2
            ;;
    esac
done

if ! command -v dpkg >/dev/null; then
    echo "Not a Debian system; these are needed under their names here: ${packages[*]} ${optional[*]}" >&2
    exit 0
fi

missing() {
    local status
    status=$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null || true)
    [[ $status != installed ]]
}

install() {
    echo "Installing $*"
    "${as_root[@]}" apt-get update
    "${as_root[@]}" apt-get install -y --no-install-recommends "$@"
}

needed=()
for package in "${packages[@]}"; do
    if missing "$package"; then needed+=("$package"); fi
done
if [[ ${#needed[@]} -gt 0 ]]; then install "${needed[@]}"; fi
for package in "${optional[@]}"; do
    if missing "$package" && apt-cache show "$package" >/dev/null 2>&1; then install "$package"; fi
done
