#!/usr/bin/env bash
# Runs the fuzzers, one after the other, under the address and undefined-behaviour sanitizers.
#   scripts/fuzz.sh [SECONDS [FUZZER...]]    each for SECONDS, 60 by default; these, or all
# New inputs that reach more code stay in build/fuzz/corpus for the next run. An input that finds a
# fault is written to build/fuzz/findings, and the script fails.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

seconds="${1:-60}"
[[ "$seconds" =~ ^[0-9]+$ ]] || die "usage: scripts/fuzz.sh [SECONDS [FUZZER...]]"
# The folder of each fuzzer's corpus; its dictionary has the same name.
declare -A corpus=([fuzz_csv_reader]=csv [fuzz_csv_import]=csv [fuzz_http_request]=http
                   [fuzz_pnp_request]=sip [fuzz_settings]=settings)
fuzzers=("${@:2}")
[ "${#fuzzers[@]}" -gt 0 ] \
    || fuzzers=(fuzz_csv_reader fuzz_csv_import fuzz_http_request fuzz_pnp_request fuzz_settings)
for fuzzer in "${fuzzers[@]}"; do
    [ -n "${corpus[$fuzzer]:-}" ] || die "no such fuzzer: $fuzzer"
done

need_packages build fuzz
build fuzz "${fuzzers[@]}"

export UBSAN_OPTIONS="print_stacktrace=1:${UBSAN_OPTIONS:-}"
export ASAN_OPTIONS="detect_leaks=1:strict_string_checks=1:${ASAN_OPTIONS:-}"
export QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES="default.debug=false"
# Inputs are written to files, which is several times faster in memory.
if [ -w /dev/shm ]; then
    export TMPDIR=/dev/shm
fi

findings="$root/build/fuzz/findings"
mkdir -p "$findings"
failed=()
for fuzzer in "${fuzzers[@]}"; do
    learned="$root/build/fuzz/corpus/$fuzzer"
    mkdir -p "$learned"
    say "$fuzzer for $seconds seconds"
    # Qt's caches make a leak check after each input slow, so there is one at the end.
    nice "$root/build/fuzz/fuzz/$fuzzer" \
        -max_total_time="$seconds" -max_len=8192 -timeout=10 -detect_leaks=0 -print_final_stats=1 \
        -dict="$root/fuzz/${corpus[$fuzzer]}.dict" -artifact_prefix="$findings/$fuzzer-" \
        "$learned" "$root/fuzz/corpus/${corpus[$fuzzer]}" || failed+=("$fuzzer")
done

[ "${#failed[@]}" -eq 0 ] || die "faults found by ${failed[*]}; see $findings"
say "no faults found"
