#!/usr/bin/env bash
# Tries the folder in a bare Debian named SUITE without Qt: unpacks it where blanks and accents are in the
# way, and uses the program as an ordinary user. Leaves screenshots in FOLDER/SUITE.
#
#   try.sh SUITE ARCHIVE FOLDER
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
suite=$1 archive=$(realpath "$2") folder=$(realpath "$3") root=$(dirname "$folder")/root
screenshots=$folder/$suite

leave()
{
    stop_user_program "$root"
    stop_desktop
    remove_root "$root"
}
trap leave EXIT

bare_root "$suite" "$root"
in_root "$root" apt-get update -q
in_root "$root" apt-get install -y -q --no-install-recommends "${PORTABLE_SYSTEM[@]}"
if in_root "$root" dpkg-query -W 'libqt6*' 2>/dev/null; then
    echo "The bare Debian has a Qt of its own" >&2
    exit 1
fi

mkdir -p "$screenshots"
place="/home/zoe/Généalogie de l'été"
as_root mkdir "$root$place"
as_root tar -C "$root$place" --strip-components=1 -xf "$archive"
prepare_trial "$root/home/zoe"
give_to_user "$root/home/zoe"
try_companion "$root/home/zoe" as_user "$root" "$place/varlune-preparer" Documents/ancien.ged
check_manual "$root$place/manuel"
start_desktop "$folder"
start_user_program "$root" env QT_QPA_PLATFORM=offscreen "$place/varlune"
sleep 3
as_root kill -0 "$(cat "$root/home/zoe/.program")" # or it has not found what it needs
stop_user_program "$root"
start_user_program "$root" env QT_QPA_PLATFORM=xcb "$place/varlune"
play_trial "$screenshots" "$root/home/zoe/Documents"
stop_user_program "$root"
check_trial "$root/home/zoe"
start_user_program "$root" "$place/varlune-preparer" Documents/ancien.ged
see_companion "$screenshots"
stop_user_program "$root"
echo "The folder passes on $suite; screenshots in $screenshots"
