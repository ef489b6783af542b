# shellcheck shell=bash
# Sourced by the scripts that show the program at work or try it: a virtual X server, and a user who has
# a keyboard. Needs the packages DEMO_PACKAGES.

# Starts the server and sets DISPLAY; FOLDER keeps a file for a moment. The caller's trap stops it.
start_desktop() # FOLDER
{
    Xvfb -displayfd 3 -screen 0 1280x1080x24 -nolisten tcp -noreset 3>"$1/.display" >/dev/null 2>&1 &
    desktop_server=$!
    until_true grep -qx '[0-9]\+' "$1/.display"
    DISPLAY=:$(cat "$1/.display")
    export DISPLAY QT_QPA_PLATFORM=xcb
    unset WAYLAND_DISPLAY
    rm "$1/.display"
    until_true xdotool getdisplaygeometry
}

stop_desktop()
{
    [ -z "${desktop_server:-}" ] || kill "$desktop_server" 2>/dev/null || true
}

# Waits at most 30 seconds until the command succeeds.
until_true()
{
    for _ in $(seq 150); do
        "$@" >/dev/null 2>&1 && return
        sleep 0.2
    done
    echo "$(basename "$0"): no answer to: $*" >&2
    exit 1
}

# A name is a regular expression here.
visible() { xdotool search --onlyvisible --name "$1"; }
gone() { ! visible "$1"; }
# A dialog is seen before it takes the keys.
focused() { xdotool getwindowfocus getwindowname | grep -x "$1"; }

keys() { xdotool key --delay 60 "$@"; }
tabs() { keys --repeat "$1" Tab; }
screenshot() { import -window root "$1"; }

# Gives the keys to the window of the program; where a window manager runs, it has to be asked.
focus_main_window()
{
    sleep 1
    until_true take_focus
}
take_focus()
{
    local window
    window=$(visible 'Varlune v' | head -n 1)
    xdotool windowactivate "$window" 2>/dev/null || xdotool windowfocus "$window"
    sleep 1
    focused 'Varlune v.*'
}

# Opens the file by the first entry of the first menu.
open_file() # PATH
{
    until_true visible 'Varlune v'
    focus_main_window
    keys alt Down Return
    until_true focused 'Ouvrir un fichier Gedcom'
    xdotool type --delay 10 "$1"
    keys Return
    until_true gone 'Ouvrir un fichier Gedcom'
    sleep 1
}
