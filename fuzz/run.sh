#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the fuzzers and runs them one after another, each on its corpus. New inputs and findings
# stay in build/asan/fuzz-work; the exit code says whether there was a finding.
# usage: fuzz/run.sh [SECONDS] [NAME...]   60 seconds each and all of them unless said otherwise
set -eu
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift || true
names=("$@")
if [ "${#names[@]}" -eq 0 ]; then
    mapfile -t names < <(find fuzz -maxdepth 1 -name 'fuzz_*.cpp' -printf '%f\n' |
        sed 's/^fuzz_\(.*\)\.cpp$/\1/' | sort)
fi

cmake --preset asan >/dev/null
cmake --build --preset asan --target "${names[@]/#/fuzz_}"

work=build/asan/fuzz-work
# Scratch files in memory where there is such a place: the disk would be the bottleneck.
[ -w /dev/shm ] && export TMPDIR=/dev/shm
failed=()
for name in "${names[@]}"; do
    mkdir -p "$work/$name" "$work/findings"
    echo "== $name"
    "build/asan/fuzz/fuzz_$name" -max_total_time="$seconds" -timeout=60 -rss_limit_mb=2048 \
        -max_len=8192 -dict="fuzz/dict/$name.dict" -artifact_prefix="$work/findings/$name-" \
        "$work/$name" "fuzz/corpus/$name" >"$work/$name.log" 2>&1 || failed+=("$name")
    grep -a 'DONE\|does not hold\|ERROR\|runtime error' "$work/$name.log" | tail -3
done
if [ "${#failed[@]}" -gt 0 ]; then
    echo "findings: ${failed[*]}; see $work" >&2
    exit 1
fi
