#!/usr/bin/env bash
# Takes the pictures of the manual, and the one of the README, from the real program on a virtual X
# server. Installs what is missing. Look at each picture before it is committed.
#
#   images.sh [NAME...]     these pictures only
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/packages.sh

need_packages "${BUILD_PACKAGES[@]}" "${DEMO_PACKAGES[@]}" "${PICTURE_PACKAGES[@]}"
cmake --preset release
cmake --build --preset release

# Its name is in the pictures.
work=/tmp/genealogie
mkdir "$work"
server=''
stop()
{
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    rm -rf "$work"
}
trap stop EXIT

Xvfb -displayfd 3 -screen 0 2600x2400x24 -nolisten tcp -noreset 3>"$work/display" >/dev/null 2>&1 &
server=$!
until grep -qx '[0-9]\+' "$work/display"; do sleep 0.1; done
DISPLAY=:$(cat "$work/display")
export DISPLAY
unset WAYLAND_DISPLAY

# The places of the widgets come from what the program tells screen readers: a bus of our own carries
# it. The typelibs belong to the Python of Debian.
dbus-run-session -- /usr/bin/python3 docs/manuel/images.py build/release "$work" "$@"
