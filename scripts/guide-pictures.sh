#!/usr/bin/env bash
# Takes the pictures of the user guide and of README.md from the real program, in both languages, on
# a virtual screen at double scale: resource/UserGuide/*.png, resource/UserGuide/chinese/*.png and
# docs/pictures/*.png. The devices in them are made up. Run it after a change of the program's look,
# check the pictures and commit them. Raw screenshots and logs are in build/guide.
#   scripts/guide-pictures.sh [en|zh]...    both languages by default
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
out="$root/build/guide"
. "$root/scripts/tour/stage.sh"

if [ "${1:-}" = --inside ]; then
    network="$2"
    shift 2
    # The smallest main window without scroll bars, with its title bar, has this size.
    set_stage "$network" 2080x1300
    mkdir -p "$HOME/.config/openbox" "$HOME/.themes/Guide/openbox-3"
    cp "$root/scripts/guide/rc.xml" "$HOME/.config/openbox/"
    cp "$root/scripts/guide/themerc" "$HOME/.themes/Guide/openbox-3/"
    openbox --reconfigure
    for language in "$@"; do
        play "$root/scripts/guide/guide_pictures.py" "$root" "$out/$language" "$language"
    done
    exit
fi

[ "$#" -gt 0 ] || set -- en zh
need_packages build tour
build release VlManager
rm -rf "$out"
for language in "$@"; do
    case "$language" in
        en | zh) lay_program "$out/$language/program" ;;
        *) die "usage: scripts/guide-pictures.sh [en|zh]..." ;;
    esac
done
enter_network "$@"
