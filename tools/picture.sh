#!/usr/bin/env bash
# Starts Sorbel on the present display, takes a picture of its window once that is painted, and ends it.
# usage: picture.sh OUT.png PROGRAM [FILE...]
set -euo pipefail

picture=$1
shift
DBUS_SESSION_BUS_ADDRESS=disabled: "$@" & # or a program that already runs would show the files
program=$!
trap 'kill "$program" 2>/dev/null || true' EXIT

# Painted: more than one colour, and the same as a moment ago (number of colours, then signature).
before=
for ((try = 0; try < 150; try++)); do
    sleep 0.2
    if ! kill -0 "$program" 2>/dev/null; then
        echo "The program ended before its window was there." >&2
        exit 1
    fi
    window=$(xdotool search --onlyvisible --class sorbel 2>/dev/null | tail -n 1) || continue
    import -silent -window "$window" "$picture" 2>/dev/null || continue
    now=$(identify -format '%k %#' "$picture")
    if [[ $now != "1 "* && $now == "$before" ]]; then
        exit 0
    fi
    before=$now
done
echo "No window came within half a minute." >&2
exit 1
