#!/usr/bin/env bash
# Pictures of every window, dialog, page, menu and message box of the real program, in both
# languages: at the smallest size that it should bear, at a common one, and at 200% scaling.
# They lie in build/screenshots/<language>-<width>x<height>@<scale>, for somebody to look at.
#   scripts/screenshots.sh [LANGUAGE-WIDTHxHEIGHT@SCALE...]     these sets only
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
shots="$root/build/screenshots"
out="$shots"
. "$root/scripts/tour/stage.sh"

# take_set <set>: the window gets the set's size times its scale, on a screen of 1280x800 points.
take_set() {
    local set="$1" language size scale
    language="${set%%-*}" size="${set#*-}"
    scale="${size#*@}" size="${size%@*}"
    out="$shots/$set"
    rm -rf "$out"
    lay_program "$out/program"
    printf '<root>\n    <Language>%s</Language>\n</root>\n' "$language" \
        >"$out/program/language/config.xml"
    started=()
    set_stage "$network" "$((1280 * scale))x$((800 * scale))"
    QT_SCALE_FACTOR="$scale" play "$root/scripts/tour/gallery.py" "$out" "$language" "$size" "$scale"
}

if [ "${1:-}" = --inside ]; then
    network="$2"
    take_set "$3"
    exit
fi

need_packages build tour
build release VlManager
mkdir -p "$shots"
[ "$#" -gt 0 ] || set -- {zh,en}-{1024x640@1,1280x800@1,1280x800@2}
status=0
for set in "$@"; do
    say "$set"
    (enter_network "$set") || status=1
done
exit "$status"
