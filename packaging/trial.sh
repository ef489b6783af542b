# shellcheck shell=bash
# Sourced by the scripts that try a package. Needs virtual_desktop.sh.

# Lays out a home folder with a document to work on, and one as an old program for Windows has left it.
prepare_trial() # HOME
{
    mkdir -p "$1/Documents"
    printf '%s\n' '0 HEAD' '1 CHAR UTF-8' '0 @I1@ INDI' '1 NAME Zoé/LE GOFF/' '0 TRLR' \
        >"$1/Documents/arbre.ged"
    printf '%s\n' '0 HEAD' '1 CHAR ANSI' '0 @I1@ INDI' $'1 NAME Zo\351/LE GOFF/' \
        >"$1/Documents/ancien.ged"
}

# From the window to the entry of the menu that saves: the one above it is disabled, and passed over.
save_keys=(alt Down Return)

# Does in the window that is about to come up what every user does: opens the document, has the names
# spaced, and saves. A message box would have taken the keys.
play_trial() # SCREENSHOTS DOCUMENTS
{
    until_true visible 'Varlune v'
    sleep 1
    screenshot "$1/1-depart.png"
    open_file arbre.ged
    # From the tree over the filter row to the first group of the form, and on to the button.
    focus_main_window
    tabs 6
    keys space
    sleep 1
    screenshot "$1/2-formulaire.png"
    tabs 8
    keys space
    until_true visible '^Journal$'
    sleep 1
    screenshot "$1/3-journal.png"
    focus_main_window
    keys "${save_keys[@]}"
    until_true compgen -G "$2/ARCH/*/journal.*"
    sleep 1
    screenshot "$1/4-enregistre.png"
}

# Has the companion make a copy of the old document that will open, without a window; the command is the
# companion with the path that it knows the document by.
try_companion() # HOME COMMAND...
{
    local said expected=$'0 HEAD\n1 CHAR UTF-8\n0 @I1@ INDI\n1 NAME Zoé/LE GOFF/\n0 TRLR'
    said=$("${@:2}" --console) || {
        echo "The companion ends with $?" >&2
        return 1
    }
    grep -q '^Varlune ouvrira ce fichier : 2 enregistrements' <<<"$said" || {
        echo "The companion says: $said" >&2
        return 1
    }
    [ "$(cat "$1/Documents/ancien.prepare.ged")" = "$expected" ] || {
        echo "The companion's copy is not what it should be" >&2
        return 1
    }
}

# Waits until the companion shows the window that is about to come up.
see_companion() # SCREENSHOTS
{
    until_true visible 'parer pour Varlune'
    sleep 2
    screenshot "$1/5-preparer.png"
}

# Asks whether the manual is there, with its pictures and as a file to print.
check_manual() # FOLDER
{
    if ! grep -q 'src="data:image' "$1/varlune.html" ||
        [ "$(file -b --mime-type "$1/varlune.pdf")" != application/pdf ]; then
        echo "The manual is not as it should be in $1" >&2
        return 1
    fi
}

# Holds what the trial has left against what it must leave; line ends aside, which are the system's.
check_trial() # HOME
{
    local expected=$'0 HEAD\n1 CHAR UTF-8\n0 @I1@ INDI\n1 NAME Zoé /LE GOFF/\n0 TRLR'
    if [ "$(tr -d '\r' <"$1/Documents/arbre.ged")" != "$expected" ]; then
        echo "The saved document is not what it should be:" >&2
        cat "$1/Documents/arbre.ged" >&2
        return 1
    fi
    local archive
    for archive in "$1"/Documents/ARCH/*/*.arbre.ged; do
        [ -s "$archive" ] || { echo "Nothing in $archive" >&2; return 1; }
    done
    [ "$(find "$1/Documents/ARCH" -name '*.arbre.ged' | wc -l)" = 2 ] || {
        echo "The archive holds something else than a copy and a journal" >&2
        return 1
    }
}
