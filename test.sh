#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Sets up what is missing, checks the sources, builds with warnings as errors and runs every
# test, the desktop tests on private displays included.
# usage: ./test.sh [LABEL...]   run only the tests with one of these labels
set -eu
cd "$(dirname "$0")"

scripts/packages.sh build run demo test
python3 scripts/check_floors.py
scripts/check_format.sh

export CCACHE_SLOPPINESS=pch_defines,time_macros
cmake --preset dev -DQUILLO_WERROR=ON >/dev/null
cmake --build --preset dev

selection=()
if [ "$#" -gt 0 ]; then
    selection=(-L "$(IFS='|'; echo "$*")")
else
    # Named runs need programs that are too big for every run, or too long; see docs/testing.md.
    selection=(-LE 'big|kill|endurance|overlay')
fi
python3 scripts/check_tidy.py build/dev
# Two at a time; what measures time, memory or rest runs alone.
ctest --preset dev "${selection[@]}" --no-tests=error -j "${QUILLO_TEST_JOBS:-2}"
