#!/usr/bin/env bash
# Builds the program and starts it; installs missing packages first. Without a desktop, or with --tour,
# runs the tour on a virtual screen instead (see scripts/tour.sh).
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

case "${1:-}" in
    --tour) exec "$root/scripts/tour.sh" ;;
    "") ;;
    *) die "usage: scripts/run.sh [--tour]" ;;
esac
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    say "no desktop here: the program is shown on a virtual screen"
    exec "$root/scripts/tour.sh"
fi

need_packages build
build release VlManager
exec "$root/build/release/bin/VlManager"
