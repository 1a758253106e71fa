#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds Quillo and starts it in this session. Without a display it plays the main job on a
# private one and leaves a screenshot of each step in ./screenshots.
set -eu
cd "$(dirname "$0")"

session=private
if [ -n "${DISPLAY:-}" ]; then
    session=x11
elif [ -n "${WAYLAND_DISPLAY:-}" ]; then
    echo "This session offers no X11 display. Start it with Xwayland and try again." >&2
    exit 1
fi

if [ "$session" = private ]; then
    scripts/packages.sh build run demo
else
    scripts/packages.sh build run
fi
export CCACHE_SLOPPINESS=pch_defines,time_macros
cmake --preset release >/dev/null
cmake --build --preset release

if [ "$session" = private ]; then
    exec tests/desktop/with_display /usr/bin/python3 scripts/demo.py \
        --program "$PWD/build/release/src/app/quillo" --screenshots "$PWD/screenshots"
fi
exec build/release/src/app/quillo
