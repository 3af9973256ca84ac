#!/usr/bin/env bash
# Installs what is missing of the Debian or Ubuntu packages of some groups.
# usage: install_packages.sh GROUP...      build, check or screen
set -euo pipefail

packages=()
for group in "$@"; do
    case $group in
        build)
            packages+=(g++ cmake ninja-build python3 qt6-base-dev libicu-dev libpng-dev
                nlohmann-json3-dev libgtest-dev fonts-dejavu-core pkg-config libhunspell-dev libxxhash-dev)
            ;;
        # clang-format of one version by name: others lay the same code out differently.
        check)
            packages+=(clang-format-14 gettext gnustep-base-runtime python3-polib
                appstream desktop-file-utils shared-mime-info libglib2.0-bin dbus-daemon)
            ;;
        # A virtual screen, and what uses the program on it.
        screen) packages+=(xvfb xauth openbox xdotool imagemagick xclip) ;;
        *)
            echo "install_packages.sh: no group of packages named $group" >&2
            exit 2
            ;;
    esac
done

if ! command -v dpkg >/dev/null; then
    echo "Not a Debian system; these are needed under their names here: ${packages[*]}" >&2
    exit 0
fi

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [[ $status == installed ]] || missing+=("$package")
done
[[ ${#missing[@]} -gt 0 ]] || exit 0

echo "Installing ${missing[*]}"
as_root=(env DEBIAN_FRONTEND=noninteractive)
[[ $(id -u) -eq 0 ]] || as_root=(sudo "${as_root[@]}")
"${as_root[@]}" apt-get update
"${as_root[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
