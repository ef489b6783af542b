#!/usr/bin/env bash
# Tries the package in a bare Debian: installs it, uses the program as an ordinary user, upgrades over a
# setting that the administrator has changed, removes and purges it. Leaves screenshots in FOLDER.
#
#   try.sh PACKAGE FOLDER
set -euo pipefail
packaging=$(realpath "$(dirname "${BASH_SOURCE[0]}")/..")
# shellcheck source=packaging/packages.sh
. "$packaging/packages.sh"
# shellcheck source=packaging/bare_root.sh
. "$packaging/bare_root.sh"
# shellcheck source=packaging/virtual_desktop.sh
. "$packaging/virtual_desktop.sh"
# shellcheck source=packaging/trial.sh
. "$packaging/trial.sh"
package=$(realpath "$1") folder=$(realpath "$2") root=$(dirname "$folder")/root

leave()
{
    stop_user_program "$root"
    stop_desktop
    remove_root "$root"
}
trap leave EXIT

fail() { echo "$(basename "$package"): $*" >&2; exit 1; }

# Whatever bears the program's name outside the home folder and the places of temporary files. The root
# itself may lie in a folder of that name.
traces()
{
    in_root "$root" find / -xdev \( -path /tmp -o -path /home -o -path /var/log -o -path /var/cache \) \
        -prune -o \( -name '*varlune*' -o -path '*/varlune/*' \) -print
}

bare_root bookworm "$root"
as_root cp "$package" "$root/tmp/varlune.deb"
in_root "$root" apt-get update -q
in_root "$root" apt-get install -y -q --no-install-recommends /tmp/varlune.deb

in_root "$root" test -L /usr/bin/varlune || fail "/usr/bin/varlune is no link"
for name in PARAM.INI SEQUENCE.INI; do
    in_root "$root" cmp "/etc/varlune/$name" "/usr/lib/varlune/$name"
    in_root "$root" grep -q '^;' "/etc/varlune/$name" || fail "$name holds no comment"
done

echo "== Use, as an ordinary user"
prepare_trial "$root/home/zoe"
give_to_user "$root/home/zoe"
try_companion "$root/home/zoe" as_user "$root" varlune-preparer Documents/ancien.ged
check_manual "$root/usr/share/doc/varlune"
start_desktop "$folder"
start_user_program "$root" varlune
play_trial "$folder" "$root/home/zoe/Documents"
stop_user_program "$root"
check_trial "$root/home/zoe"
start_user_program "$root" varlune-preparer Documents/ancien.ged
see_companion "$folder"
stop_user_program "$root"

echo "== Upgrade over a changed setting"
echo 'EspacerPrenomNom=true' | as_root tee -a "$root/etc/varlune/PARAM.INI" >/dev/null
in_root "$root" apt-get install -y -q --reinstall /tmp/varlune.deb
newer=$folder/newer.deb
rm -rf "$folder/newer"
dpkg-deb -R "$package" "$folder/newer"
sed -i 's/^Version: .*/&.1/' "$folder/newer/DEBIAN/control"
echo '; Une ligne de la version suivante.' >>"$folder/newer/etc/varlune/PARAM.INI"
dpkg-deb --root-owner-group -b "$folder/newer" "$newer" >/dev/null
as_root cp "$newer" "$root/tmp/newer.deb"
in_root "$root" apt-get install -y -q -o Dpkg::Options::=--force-confold /tmp/newer.deb
in_root "$root" grep -qx EspacerPrenomNom=true /usr/lib/varlune/PARAM.INI ||
    fail "the upgrade has taken the administrator's setting away"
rm -rf "$folder/newer" "$newer"

echo "== Removal"
in_root "$root" apt-get remove -y -q varlune
in_root "$root" grep -qx EspacerPrenomNom=true /etc/varlune/PARAM.INI ||
    fail "the removal has taken the administrator's setting away"
in_root "$root" apt-get purge -y -q varlune
left=$(traces)
[ -z "$left" ] || fail "the purge leaves $left"
[ -z "$(in_root "$root" dpkg-query -W varlune 2>/dev/null)" ] || fail "the purge leaves the package's name"
echo "The package passes; screenshots in $folder"
