# shellcheck shell=bash
# Sourced by the scripts that make the folders with all that the program needs.

# Puts the licences of the Debian PACKAGES into FOLDER, with the texts to which they refer.
copy_licences() # FOLDER PACKAGE...
{
    local folder=$1 package text
    mkdir -p "$folder"
    for package in "${@:2}"; do
        cp -L "/usr/share/doc/$package/copyright" "$folder/$package.txt"
    done
    grep -ohE '/usr/share/common-licenses/[A-Za-z]+(-[0-9]+(\.[0-9]+)?)?' -- "$folder"/*.txt | sort -u |
        while read -r text; do
            [ ! -e "$text" ] || cp -L "$text" "$folder/$(basename "$text").txt"
        done
    for text in LGPL-3 GPL-3; do
        cp "/usr/share/common-licenses/$text" "$folder/$text.txt"
    done
}

# Writes a text for users to FILE, with the marks @VERSION@, @QT@ and @PAQUETS@ filled in.
write_text() # SOURCE FILE VERSION PACKAGE...
{
    sed -e "s/@VERSION@/$3/g" -e "s/@QT@/$PACKAGE_QT/g" -e "s/@PAQUETS@/${*:4}/g" "$1" >"$2"
}
