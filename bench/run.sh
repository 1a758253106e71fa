#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Measures the whole program on a private display and prints the table of docs/performance.md:
# builds the release, makes the stores (kept under QUILLO_BENCH_STORES for the next time), runs
# everything. With MICRO=on the benchmarks of the parts run before it. Arguments go to the
# harness: bench/run.sh --only hotkey,copy --sizes 1000. About twelve minutes; leave the machine alone.
set -eu
cd "$(dirname "$0")/.."
build=${BUILD:-build/bench}
export QUILLO_BENCH_STORES=${QUILLO_BENCH_STORES:-$PWD/$build/bench/stores}
cmake --preset release -DQUILLO_BENCH=ON -B "$build" >"$build.log"
cmake --build "$build" >>"$build.log"
if [ "${MICRO:-off}" = on ]; then
    for part in "$build"/bench/bench_*; do
        case $part in *_autogen|*_whole_program) continue ;; esac
        "$part" --benchmark_min_time=0.2
    done
fi
tests/desktop/with_display "$build/bench/bench_whole_program" --program "$build/src/app/quillo" "$@"
