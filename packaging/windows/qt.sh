#!/usr/bin/env bash
# Builds Qt for 64-bit Windows into FOLDER/qt, from the source package of the system's own Qt: shared Core,
# Gui, Widgets and Test, less what the programs do not use. That takes an hour; where FOLDER/qt is there,
# nothing is done.
#
#   qt.sh FOLDER
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
# shellcheck source=packaging/packages.sh
. "$here/../packages.sh"
folder=$(realpath "$1")
[ ! -e "$folder/qt" ] || exit 0

work=$folder/qt-build
rm -rf "$work"
mkdir -p "$work"/{lists/partial,cache/archives/partial}

# The source package, without a change in the lists of packages that the machine has.
cat >"$work/sources.list" <<END
deb-src http://deb.debian.org/debian bookworm main
deb-src http://deb.debian.org/debian-security bookworm-security main
END
apt_get()
{
    apt-get -q -o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=/dev/null \
        -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache" -o APT::Sandbox::User=root "$@"
}
package_version=$(dpkg-query -W -f '${source:Version}' libqt6core6)
cd "$work"
if ! apt_get update || ! apt_get source "qt6-base=$package_version"; then
    echo "The source of Qt, qt6-base $package_version, could not be fetched" >&2
    exit 1
fi
source=$(realpath qt6-base-*/)

settings=()
off() { settings+=("${@/%/=OFF}"); }
# Modules that the programs do not use.
off -DFEATURE_{network,sql,xml,concurrent,dbus,printsupport}
# Screens are drawn by the processor. Debian's source lacks what graphics tablets need.
settings+=(-DINPUT_opengl=no)
off -DFEATURE_{opengl,opengl_desktop,opengl_dynamic,vulkan,direct2d1_1,tabletevent}
# Parts of Gui and Widgets that the programs do not use.
off -DFEATURE_{gif,jpeg,pdf,textodfwriter,textmarkdownreader,textmarkdownwriter,tuiotouch}
off -DFEATURE_{graphicsview,graphicseffect,undocommand,undostack,undogroup,undoview,wizard}
off -DFEATURE_{calendarwidget,mdiarea,lcdnumber,dial,columnview,keysequenceedit,fontdialog,toolbox}
off -DFEATURE_{splashscreen,systemtrayicon,sharedmemory,systemsemaphore}
off -DFEATURE_{jalalicalendar,hijricalendar,islamiccivilcalendar}
# The libraries that come with the source, in place of those of a system.
off -DFEATURE_system_{zlib,pcre2,png,freetype,harfbuzz,doubleconversion}
off -DFEATURE_{zstd,icu,glib,fontconfig,pkg_config,cpp_winrt}
# The tools are those of the machine's own Qt.
off -DFEATURE_{androiddeployqt,macdeployqt,windeployqt,qmake}

echo "Building Qt for Windows; this takes an hour of processor time"
cmake -G Ninja -S "$source" -B "$work/build" \
    -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" -DCMAKE_INSTALL_PREFIX="$folder/qt" \
    -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON -DQT_QMAKE_TARGET_MKSPEC=win32-g++ \
    -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF \
    -DQT_BUILD_TOOLS_BY_DEFAULT=OFF -DQT_BUILD_TOOLS_WHEN_CROSSCOMPILING=OFF \
    "${settings[@]}"
cmake --build "$work/build"
DESTDIR=$work/new cmake --install "$work/build" --strip
mv "$work/new$folder/qt" "$folder/qt"
rm -rf "$work"
