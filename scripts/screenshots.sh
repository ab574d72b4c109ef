#!/usr/bin/env bash
# Takes pictures of every window, dialog, page, menu and message box of the real program, in both
# languages, on screens from the smallest supported one to 200% scaling. The window has the size in
# which it opens there. A person should look at the pictures, which are in
# build/screenshots/<language>-<width>x<height>@<percent> (the screen's real pixels, and the scale).
#   scripts/screenshots.sh [LANGUAGE-WIDTHxHEIGHT@PERCENT...]     these sets only
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
shots="$root/build/screenshots"
out="$shots"
. "$root/scripts/tour/stage.sh"

# take_set <set>
take_set() {
    local set="$1" language size percent
    language="${set%%-*}" size="${set#*-}"
    percent="${size#*@}" size="${size%@*}"
    out="$shots/$set"
    rm -rf "$out"
    lay_program "$out/program"
    printf '<root>\n    <Language>%s</Language>\n</root>\n' "$language" \
        >"$out/program/language/config.xml"
    started=()
    set_stage "$network" "$size"
    # Sets the scale as a desktop does; Qt needs the tab.
    xprop -root -f RESOURCE_MANAGER 8s \
        -set RESOURCE_MANAGER "$(printf 'Xft.dpi:\t%d' "$((96 * percent / 100))")"
    play "$root/scripts/tour/gallery.py" "$out" "$language" "$percent"
}

if [ "${1:-}" = --inside ]; then
    network="$2"
    take_set "$3"
    exit
fi

need_packages build tour
build release VlManager
mkdir -p "$shots"
[ "$#" -gt 0 ] || set -- {zh,en}-{1024x600@100,1280x800@100,1366x768@125,1920x1080@150,1920x1080@175,2560x1600@200}
status=0
for set in "$@"; do
    say "$set"
    (enter_network "$set") || status=1
done
exit "$status"
