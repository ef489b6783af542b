#!/usr/bin/env bash
# Makes the Debian package, twice, since both must be the same, and tries it. Called by ./package, which
# has set the epoch of all dates.
#
#   make.sh VERSION WORK FOLDER    the package comes into FOLDER once it has passed
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
# shellcheck source=packaging/packages.sh
. "$here/../packages.sh"
# shellcheck source=packaging/linux.sh
. "$here/../linux.sh"
version=$1 work=$(realpath "$2") out=$(realpath "$3")
need_packages "${DEB_PACKAGES[@]}"

name=varlune_$version-1_$(dpkg --print-architecture).deb
for build in first second; do
    build_linux "$work/$build" -DVARLUNE_PORTABLE=OFF
    rm -rf "$work/$build/_CPack_Packages"
    (cd "$work/$build" && cpack)
done
if ! cmp "$work/first/$name" "$work/second/$name"; then
    echo "Two builds of the package differ" >&2
    exit 1
fi

lintian --display-info --pedantic --allow-root --fail-on error,warning,info,pedantic \
    "$work/first/$name"
"$here/try.sh" "$work/first/$name" "$work"
mv "$work/first/$name" "$out/"
