# shellcheck shell=bash
# Sourced by the scripts that run programs for Windows: wine, in a folder of its own below build/. As root
# no file would be read-only, hence another user, where the folder lets one in.

# Makes HOME and the drive C: of wine below FOLDER.
start_wine() # FOLDER
{
    wine_home=$1
    as=()
    mkdir -p "$wine_home/tmp"
    if [ "$(id -u)" -eq 0 ] && setpriv --reuid=65534 --regid=65534 --clear-groups test -x "$PWD"; then
        as=(setpriv --reuid=65534 --regid=65534 --clear-groups)
        give_to_wine "$wine_home"
    else
        echo "wine runs as $(id -un)"
    fi
    wine wineboot --init >/dev/null 2>&1
    wine winecfg /v win10 >/dev/null 2>&1
    # Wine hands on neither of these from the environment.
    local name
    for name in TEMP TMP; do
        wine reg add 'HKCU\Environment' /v "$name" /d "$(windows_path "$wine_home/tmp")" /f \
            >/dev/null 2>&1
    done
}

# Runs the program, for half an hour at most. No program for .NET or HTML is asked for, no entry is made
# in the menus of the desktop.
wine() # PROGRAM ARGUMENT...
{
    "${as[@]}" timeout -k 5 1800 env HOME="$wine_home" WINEPREFIX="$wine_home/prefix" WINEARCH=win64 WINEDEBUG=-all \
        WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=' LC_ALL=C.UTF-8 \
        WINEPATH="${wine_path:-}" WINEQT_QPA_FONTDIR='Z:\usr\share\fonts\truetype\dejavu' \
        nice /usr/lib/wine/wine64 "$@"
}

# Lets the user of wine have what FOLDER holds.
give_to_wine() # FOLDER
{
    [ ${#as[@]} -eq 0 ] || chown -R 65534:65534 "$1"
}

stop_wine()
{
    "${as[@]}" env WINEPREFIX="$wine_home/prefix" /usr/lib/wine/wineserver64 -k 2>/dev/null || true
}

# The name that Windows has for the path.
windows_path() # PATH
{
    echo "Z:${1//\//\\}"
}
