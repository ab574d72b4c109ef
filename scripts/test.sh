#!/usr/bin/env bash
# Builds everything and runs every test; installs missing packages first.
#   scripts/test.sh          the release build
#   scripts/test.sh --full   the sanitizer builds and the static checkers as well
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

full=no
case "${1:-}" in
    --full) full=yes ;;
    "") ;;
    *) die "usage: scripts/test.sh [--full]" ;;
esac

export ASAN_OPTIONS="detect_leaks=1:strict_string_checks=1:${ASAN_OPTIONS:-}"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1:${UBSAN_OPTIONS:-}"
[ -f "$root/tests/lsan.supp" ] \
    && export LSAN_OPTIONS="suppressions=$root/tests/lsan.supp:print_suppressions=0:${LSAN_OPTIONS:-}"
export TSAN_OPTIONS="halt_on_error=0:second_deadlock_stack=1:${TSAN_OPTIONS:-}"
[ -f "$root/tests/tsan.supp" ] \
    && TSAN_OPTIONS="suppressions=$root/tests/tsan.supp:$TSAN_OPTIONS"

failed=()

# run_tests <preset>: runs every test of this build; fails when there is none.
run_tests() {
    build "$1"
    say "testing $1"
    (cd "$root" && ctest --preset "$1" -j "$(jobs_wanted)" --no-tests=error) || failed+=("tests, $1")
}

need_packages build cross test
[ "$full" = no ] || need_packages lint

run_tests release
if [ "$full" = yes ]; then
    run_tests asan
    run_tests tsan
    "$root/scripts/lint.sh" || failed+=("lint")
fi

if [ "${#failed[@]}" -gt 0 ]; then
    for what in "${failed[@]}"; do
        say "FAILED: $what"
    done
    exit 1
fi
say "all checks passed"
