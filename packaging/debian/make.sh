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
first=$(dirname "$work")/linux
second=$work/second
rm -rf "$second"
for build in "$first" "$second"; do
    build_linux "$build" -DVARLUNE_PORTABLE=OFF
    rm -rf "$build/_CPack_Packages"
    (cd "$build" && cpack)
done
if ! cmp "$first/$name" "$second/$name"; then
    echo "Two builds of the package differ" >&2
    exit 1
fi

lintian --display-info --pedantic --allow-root --fail-on error,warning,info,pedantic \
    "$first/$name"
"$here/try.sh" "$first/$name" "$work"
mv "$first/$name" "$out/"
