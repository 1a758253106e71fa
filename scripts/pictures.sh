#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the pictures of the panel in docs/images again, with the program of build/dev.
# usage: scripts/pictures.sh [SET...]   only these sets: main plain narrow wide popover settings
#        library library-wide
set -eu
cd "$(dirname "$0")/.."
export QUILLO_PROGRAM="${QUILLO_PROGRAM:-$PWD/build/dev/src/app/quillo}" AT_SPI=on
folder=${QUILLO_PICTURES:-docs/images}

make_set() {
    echo "$1: $SCREEN_SIZE under $WM, compositor $COMPOSITOR"
    tests/desktop/with_display /usr/bin/python3 scripts/pictures/pictures.py --set "$1" \
        --folder "$folder"
}

[ "$#" -gt 0 ] || set -- main plain narrow wide popover settings library library-wide
for name in "$@"; do
    case "$name" in
        main) WM=xfwm4 COMPOSITOR=on SCREEN_SIZE=1440x900 make_set main ;;
        plain) WM=openbox COMPOSITOR=off SCREEN_SIZE=1440x900 make_set plain ;;
        narrow) WM=xfwm4 COMPOSITOR=on SCREEN_SIZE=1024x768 make_set narrow ;;
        wide) WM=xfwm4 COMPOSITOR=on SCREEN_SIZE=2560x1440 make_set wide ;;
        popover) WM=xfwm4 COMPOSITOR=on SCREEN_SIZE=1440x900 make_set popover ;;
        settings) WM=openbox COMPOSITOR=off SCREEN_SIZE=1024x768 make_set settings ;;
        library) WM=openbox COMPOSITOR=off SCREEN_SIZE=1600x1000 make_set library ;;
        library-wide) WM=openbox COMPOSITOR=off SCREEN_SIZE=2560x1440 make_set library-wide ;;
        *) echo "unknown set: $name" >&2; exit 2 ;;
    esac
done
