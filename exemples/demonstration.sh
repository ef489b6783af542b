#!/usr/bin/env bash
# Shows the program at work, on a virtual X server and by the keyboard alone, as a user would: opens
# a copy of the sample family, plays the sequence beside the program, which saves, and prints where
# everything is. A copy of the program runs, with the parameter and sequence files of this folder
# beside it, in the folder of the copied family, from which the paths of the sequence start.
#
#   demonstration.sh PROGRAM FOLDER     FOLDER is emptied first
set -euo pipefail

samples=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
rm -rf "$2"
mkdir -p "$2/medias_a_garder" "$2/programme"
folder=$(realpath "$2")
cp "$1" "$samples/PARAM.INI" "$samples/SEQUENCE.INI" "$folder/programme/"
program=$folder/programme/$(basename "$1")
cp -r "$samples"/{famille.ged,correspondance.csv,medias} "$folder/"
cd "$folder"

server=''
window_program=''
stop()
{
    [ -z "$window_program" ] || kill "$window_program" 2>/dev/null || true
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
}
trap stop EXIT

# Waits at most 30 seconds until the command succeeds.
until_true()
{
    for _ in $(seq 150); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.2
    done
    echo "demonstration: no answer to: $*" >&2
    exit 1
}

Xvfb -displayfd 3 -screen 0 1280x1080x24 -nolisten tcp -noreset 3>"$folder/.display" >/dev/null 2>&1 &
server=$!
display_number() { grep -x '[0-9]\+' "$folder/.display"; }
until_true display_number
DISPLAY=:$(display_number)
export DISPLAY QT_QPA_PLATFORM=xcb
unset WAYLAND_DISPLAY
rm "$folder/.display"
until_true xdotool getdisplaygeometry

# A session's desktop would bring its own file dialog.
QT_QPA_PLATFORMTHEME='' "$program" 2>/dev/null &
window_program=$!

visible() { xdotool search --onlyvisible --name "$1"; }
keys() { xdotool key --delay 60 "$@"; }
tabs() { keys --repeat "$1" Tab; }

until_true visible 'Varlune v'
main_window=$(visible 'Varlune v' | head -n 1)
xdotool windowfocus --sync "$main_window"

# The first entry of the first menu opens a file.
keys alt Down Return
# A dialog is seen before it takes the keys.
focused() { xdotool getwindowfocus getwindowname | grep -x "$1"; }
until_true focused 'Ouvrir un fichier Gedcom'
xdotool type --delay 10 "$folder/famille.ged"
keys Return
gone() { ! visible "$1"; }
until_true gone 'Ouvrir un fichier Gedcom'
sleep 1
import -window root "$folder/1-ouvert.png"

# From the tree over the filter row and the groups of the form to the button of the sequence.
xdotool windowfocus --sync "$main_window"
tabs 15
keys space
# The sequence stops at each name that it cannot space, and saves as its last step.
answer_or_journal() { visible '^Journal$' || { visible '^Erreur$' && keys Return && false; }; }
until_true answer_or_journal
sleep 1
import -window root "$folder/2-journal.png"
journal=$(printf '%s\n' "$folder"/ARCH/*/journal.*.famille.ged | tail -n 1)
archive=${journal/journal./}

files_in() { find "$1" -type f | wc -l; }
echo "The rewritten file:  $folder/famille.ged ($(wc -l <"$folder/famille.ged") lines, $(wc -l <"$samples/famille.ged") before)"
echo "The last save replaced: $archive"
echo "The journal:         $journal ($(wc -l <"$journal") lines)"
echo "The media kept:      $folder/medias_a_garder ($(files_in "$folder/medias_a_garder") of $(files_in "$samples/medias") files)"
echo "Screenshots:         $folder/1-ouvert.png 2-journal.png"
