#!/usr/bin/env bash
# Uses the built program once as a person would: in a real window on a virtual screen, with real keys
# and mouse clicks, and with a phone that fetches its file. Leaves screenshots and logs in build/tour.
# The exit status is not 0 if a check fails.
#
# Where the system allows, the program runs in a network of its own, with the phone as a second host,
# so that port 80 is free and the tour does not affect the rest of this machine.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
out="$root/build/tour"
. "$root/scripts/tour/stage.sh"

case "${1:-}" in
    --inside)
        set_stage "$2" 1280x800
        play "$root/scripts/tour/tour.py" "$out"
        exit
        ;;
    "") ;;
    *) die "usage: scripts/tour.sh" ;;
esac

need_packages build tour
build release VlManager
rm -rf "$out"
lay_program "$out/program"
enter_network
