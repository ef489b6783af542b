#!/usr/bin/env bash
# Tries the archive and the installer under wine: unpacks the one where blanks and accents are in the way,
# installs, upgrades and removes with the other, and uses the program of each. Leaves screenshots in FOLDER.
#
#   try.sh ARCHIVE INSTALLER FOLDER
set -euo pipefail
packaging=$(realpath "$(dirname "${BASH_SOURCE[0]}")/..")
# shellcheck source=packaging/virtual_desktop.sh
. "$packaging/virtual_desktop.sh"
# shellcheck source=packaging/trial.sh
. "$packaging/trial.sh"
# shellcheck source=packaging/windows/wine.sh
. "$packaging/windows/wine.sh"
archive=$(realpath "$1") installer=$(realpath "$2") folder=$(realpath "$3")

# Windows does not pass over disabled entries.
save_keys=(alt Down Down Return)

manager=''
leave()
{
    stop_wine
    [ -z "$manager" ] || kill "$manager" 2>/dev/null || true
    stop_desktop
}
trap leave EXIT
fail() { echo "For Windows: $*" >&2; exit 1; }

rm -rf "$folder/wine"
start_desktop "$folder"
openbox &
manager=$!
start_wine "$folder/wine"
user=$(realpath "$folder"/wine/prefix/drive_c/users/[!P]*)

# Uses the programs in FOLDER, and asks of the document that its lines end as Windows has them.
use() # FOLDER SCREENSHOTS
{
    local old=$user/Documents/ancien.ged
    mkdir -p "$2"
    rm -rf "$user/Documents"/{ARCH,ancien.prepare.ged}
    prepare_trial "$user"
    give_to_wine "$folder/wine"
    try_companion "$user" wine "$1/varlune-preparer.exe" "$(windows_path "$old")"
    check_manual "$1/manuel"
    wine "$1/varlune.exe" &
    local program=$!
    play_trial "$2" "$user/Documents"
    check_trial "$user"
    [ "$(grep -c $'\r$' "$user/Documents/arbre.ged")" = 5 ] || fail "the lines do not end in CR LF"
    end_program "$program"
    wine "$1/varlune-preparer.exe" "$(windows_path "$old")" &
    program=$!
    see_companion "$2"
    end_program "$program"
}

end_program() # NUMBER
{
    stop_wine
    { wait "$1" || true; } 2>/dev/null # which would tell of its end
}

echo "== The archive"
place="$folder/wine/Généalogie de l'été"
mkdir -p "$place"
(cd "$place" && cmake -E tar xf "$archive")
use "$place/$(basename "$archive" .zip)" "$folder/archive"

echo "== The installer"
wine "$installer" /S
installed=$user/AppData/Local/Programs/Varlune
[ -e "$installed/varlune.exe" ] || fail "nothing is installed"
menu="$user/AppData/Roaming/Microsoft/Windows/Start Menu/Programs/Varlune"
for entry in Varlune 'Préparer un fichier' Manuel Lisez-moi 'Dossier de Varlune'; do
    [ -e "$menu/$entry.lnk" ] || fail "there is no entry \"$entry\" in the start menu"
done
use "$installed" "$folder/installation"
printf 'EspacerPrenomNom=true\r\n' >>"$installed/PARAM.INI"
wine "$installer" /S
grep -q '^EspacerPrenomNom=true' "$installed/PARAM.INI" || fail "the upgrade has taken a setting away"

wine "$installed/desinstaller.exe" /S "_?=$(windows_path "$installed")"
stop_wine
left=$(cd "$installed" && find . -type f | LC_ALL=C sort | tr '\n' ' ')
[ "$left" = './PARAM.INI ./desinstaller.exe ' ] || [ "$left" = './PARAM.INI ' ] ||
    fail "the removal leaves $left"
[ ! -e "$menu" ] || fail "the removal leaves the start menu"
echo "The archive and the installer pass; screenshots in $folder"
