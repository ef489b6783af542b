#!/usr/bin/env bash
# Shows the program at work, on a virtual X server and by the keyboard alone, as a user would: opens
# a copy of the sample family, plays the sequence beside the program, which saves, and prints where
# everything is. A copy of the program runs, with the parameter and sequence files of this folder
# beside it, in the folder of the copied family, from which the paths of the sequence start.
#
#   demonstration.sh PROGRAM FOLDER     FOLDER is emptied first
set -euo pipefail

# shellcheck source=packaging/virtual_desktop.sh
. "$(dirname "${BASH_SOURCE[0]}")/../packaging/virtual_desktop.sh"
samples=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
rm -rf "$2"
mkdir -p "$2/medias_a_garder" "$2/programme"
folder=$(realpath "$2")
cp "$1" "$samples/PARAM.INI" "$samples/SEQUENCE.INI" "$folder/programme/"
program=$folder/programme/$(basename "$1")
cp -r "$samples"/{famille.ged,correspondance.csv,medias} "$folder/"
cd "$folder"

window_program=''
stop()
{
    [ -z "$window_program" ] || kill "$window_program" 2>/dev/null || true
    stop_desktop
}
trap stop EXIT
start_desktop "$folder"

# A session's desktop would bring its own file dialog.
QT_QPA_PLATFORMTHEME='' "$program" 2>/dev/null &
window_program=$!

open_file "$folder/famille.ged"
screenshot "$folder/1-ouvert.png"

# From the tree over the filter row and the groups of the form to the button of the sequence.
focus_main_window
tabs 15
keys space
# The sequence stops at each name that it cannot space, and saves as its last step.
answer_or_journal() { visible '^Journal$' || { visible '^Erreur$' && keys Return && false; }; }
until_true answer_or_journal
sleep 1
screenshot "$folder/2-journal.png"
journal=$(printf '%s\n' "$folder"/ARCH/*/journal.*.famille.ged | tail -n 1)
archive=${journal/journal./}

files_in() { find "$1" -type f | wc -l; }
echo "The rewritten file:  $folder/famille.ged ($(wc -l <"$folder/famille.ged") lines, $(wc -l <"$samples/famille.ged") before)"
echo "The last save replaced: $archive"
echo "The journal:         $journal ($(wc -l <"$journal") lines)"
echo "The media kept:      $folder/medias_a_garder ($(files_in "$folder/medias_a_garder") of $(files_in "$samples/medias") files)"
echo "Screenshots:         $folder/1-ouvert.png 2-journal.png"
