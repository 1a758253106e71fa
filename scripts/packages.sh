#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs what is missing of the Debian packages that a purpose needs: build, run, demo, test.
# usage: scripts/packages.sh PURPOSE...
set -eu

build="g++ cmake ninja-build ccache pkg-config qt6-base-dev qt6-base-private-dev qt6-svg-dev
  qt6-multimedia-dev libsqlite3-dev libsqlitecpp-dev libicu-dev libxcb1-dev libxcb-xfixes0-dev libxcb-xtest0-dev
  libxcb-xkb-dev libxkbcommon-dev libxkbcommon-x11-dev libheif-dev
  libgcrypt20-dev nettle-dev libsystemd-dev zlib1g-dev"
run="qt6-image-formats-plugins libqt6svg6 shared-mime-info fontconfig fonts-inter
  fonts-dejavu-core"
demo="xvfb openbox dbus dbus-x11 xdotool xclip wmctrl x11-utils x11-xserver-utils x11-xkb-utils
  xauth xterm mousepad imagemagick sqlite3 python3 python3-gi gir1.2-gtk-3.0 gir1.2-vte-2.91
  procps"
test="libgtest-dev libgmock-dev libbenchmark-dev clang-format-19 clang-tidy-19 xfwm4 kwin-x11 picom
  at-spi2-core pcmanfm libxres1 git pulseaudio pulseaudio-utils trayer desktop-file-utils
  libglib2.0-bin"

wanted=
for purpose in "$@"; do
    case "$purpose" in
        build) wanted="$wanted $build" ;;
        run) wanted="$wanted $run" ;;
        demo) wanted="$wanted $demo" ;;
        test) wanted="$wanted $test" ;;
        *) echo "unknown purpose: $purpose" >&2; exit 2 ;;
    esac
done

missing=
for package in $wanted; do
    status=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing="$missing $package"
done
[ -n "$missing" ] || exit 0

echo "Installing:$missing" >&2
as_root=
if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || { echo "Please install as root:$missing" >&2; exit 1; }
    as_root=sudo
fi
export DEBIAN_FRONTEND=noninteractive
# shellcheck disable=SC2086
$as_root apt-get update -qq
# shellcheck disable=SC2086
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >&2
