#!/usr/bin/env bash
# Makes the archive and the installer for Windows, and tries them under wine. Called by ./package, which has
# set the epoch of all dates.
#
#   make.sh VERSION WORK FOLDER    both come into FOLDER once they have passed
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
# shellcheck source=packaging/packages.sh
. "$here/../packages.sh"
# shellcheck source=packaging/licences.sh
. "$here/../licences.sh"
version=$1 work=$(realpath "$2") out=$(realpath "$3")
need_packages "${WINDOWS_PACKAGES[@]}"

nice "$here/qt.sh" "$(dirname "$work")"
qt=$(dirname "$work")/qt
cmake --preset windows
nice cmake --build --preset windows
build_manual build/windows
"$here/test.sh" "$work"

name=varlune-$version-windows-x86_64
folder=$work/$name
rm -rf "$folder"
cmake --install build/windows --prefix "$folder"

# What of Qt is loaded by name, and the libraries of Qt and of the compiler.
for plugin in platforms/qwindows imageformats/qico styles/qwindowsvistastyle; do
    install -D -m 644 -t "$folder/$(dirname "$plugin")" "$qt/plugins/$plugin.dll"
done
rm -rf "$work/dlls"
mkdir "$work/dlls"
for library in "$qt"/bin/*.dll; do # CMake knows them by lower-case names
    name_of_link=$(basename "$library")
    ln -s "$library" "$work/dlls/${name_of_link,,}"
done
runtime=$(x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++-6.dll)
cmake -D FOLDER="$folder" -D INTO="$folder" \
    -D "SEARCHED=$work/dlls;$(dirname "$runtime");/usr/x86_64-w64-mingw32/lib" \
    -P "$here/../libraries.cmake"
find "$folder" \( -name '*.exe' -o -name '*.dll' \) -exec x86_64-w64-mingw32-strip --strip-unneeded {} +
chmod -R u+w,go=u-w "$folder"

copy_licences "$folder/licences" libqt6core6 qt6-translations-l10n \
    gcc-mingw-w64-x86-64-posix mingw-w64-x86-64-dev
write_text "$here/../OFFRE.txt" "$folder/licences/OFFRE.txt" "$version"
write_text "$here/LISEZMOI.txt" "$folder/LISEZMOI.txt" "$version"
for text in LISEZMOI.txt PARAM.INI SEQUENCE.INI LICENSE licences/OFFRE.txt; do
    sed -i 's/$/\r/' "$folder/$text"
done

(cd "$work" && find "$name" \( -type f -o -empty \) | LC_ALL=C sort >files &&
    cmake -E tar cf "$name.zip" --format=zip --mtime="$(date -u -d "@$SOURCE_DATE_EPOCH" '+%F %T UTC')" \
        --files-from=files)

# The installer removes what it has brought, file by file, and folders that are then empty.
# shellcheck disable=SC2016 # the variable is the installer's
(cd "$folder" && {
    find . -type f ! -path ./PARAM.INI ! -path ./SEQUENCE.INI -printf '%P\n' |
        sed 's|/|\\|g; s|.*|Delete "$INSTDIR\\&"|'
    find . -mindepth 1 -depth -type d -printf '%P\n' | sed 's|/|\\|g; s|.*|RMDir "$INSTDIR\\&"|'
}) >"$work/uninstall.nsh"
cp icones/ico/logo_varlune.ico "$work/varlune.ico"
setup=varlune-$version-windows-x86_64-installation.exe
makensis -V2 -WX -INPUTCHARSET UTF8 -DVERSION="$version" -DSOURCE="$folder" -DLISTS="$work" \
    -DOUTPUT="$work/$setup" "$here/installer.nsi"

"$here/try.sh" "$work/$name.zip" "$work/$setup" "$work"
mv "$work/$name.zip" "$work/$setup" "$out/"
