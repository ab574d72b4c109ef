#!/usr/bin/env bash
# Runs those unit tests under Wine that are built for Windows and need no screen.
#   scripts/windows/unit-tests.sh [ctest argument]...
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/../lib.sh"
. "$root/scripts/windows/wine.sh"
out="$root/build/windows/test"
mkdir -p "$out"

case "${1:-}" in
    --inside)
        network="$2"
        shift 2
        . "$root/scripts/tour/stage.sh"
        set_stage "$network" 1280x800
        trap 'end_wine; cleanup' EXIT
        make_wine_prefix "$work"
        cd "$root"
        # One test at a time: Wine's server handles the waits of all tests, and so slows each down.
        ctest --preset windows -R '^tst_' -LE screen --no-tests=error "$@"
        ;;
    *)
        . "$root/scripts/tour/stage.sh"
        enter_network "$@"
        ;;
esac
