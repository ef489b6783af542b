#!/usr/bin/env bash
# Makes the folder for any Linux and tries it. Called by ./package, which has set the epoch of all dates.
#
#   make.sh VERSION WORK FOLDER    the archive comes into FOLDER once it has passed
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
# shellcheck source=packaging/packages.sh
. "$here/../packages.sh"
# shellcheck source=packaging/linux.sh
. "$here/../linux.sh"
# shellcheck source=packaging/licences.sh
. "$here/../licences.sh"
version=$1 work=$(realpath "$2") out=$(realpath "$3")
need_packages "${PORTABLE_PACKAGES[@]}"

name=varlune-$version-linux-x86_64
folder=$work/$name
rm -rf "$folder"
build=$(dirname "$work")/linux
build_linux "$build" -DVARLUNE_PORTABLE=ON
cmake --install "$build" --prefix "$folder" --strip

# What of Qt is loaded by name: screens, icons, dead keys, and the frame of windows under Wayland.
qt_plugins=$(/usr/lib/qt6/bin/qtpaths --query QT_INSTALL_PLUGINS)
for plugin in platforms/{qxcb,qwayland-generic,qoffscreen} imageformats/qico \
    platforminputcontexts/{compose,ibus}platforminputcontextplugin \
    wayland-shell-integration/xdg-shell wayland-decoration-client/bradient; do
    install -D -m 644 -t "$folder/plugins/$(dirname "$plugin")" \
        "$qt_plugins/$(dirname "$plugin")/lib$(basename "$plugin").so"
done
printf '[Paths]\nPlugins = plugins\n' >"$folder/qt.conf"

# What goes with the system's C library, its drivers, its display or its fonts comes from the system.
left='^(ld-linux.*|libc|libm|libdl|librt|libpthread|libresolv|libgcc_s|libstdc\+\+)\.so'
left+=';^lib(GL|EGL|GLX|OpenGL|GLdispatch|drm|gbm)\.so;^lib(X11|X11-xcb|xcb|wayland-client)\.so'
left+=';^lib(fontconfig|freetype|harfbuzz|png16|z|glib-2\.0|gobject-2\.0|gio-2\.0|dbus-1)\.so'
cmake -D FOLDER="$folder" -D INTO="$folder/lib" -D "LEFT=$left" -P "$here/../libraries.cmake"
find "$folder" -name '*.so*' -exec chmod 644 {} +

# Each finds the libraries where it lies itself; the older form of the path holds for theirs, too.
patchelf --force-rpath --set-rpath "\$ORIGIN/lib" "$folder"/varlune*
find "$folder/lib" -type f -exec patchelf --force-rpath --set-rpath "\$ORIGIN" {} +
find "$folder/plugins" -type f -exec patchelf --force-rpath --set-rpath "\$ORIGIN/../../lib" {} +

mapfile -t packages < <(find "$folder/lib" "$folder/plugins" -name '*.so*' -printf '%f\n' |
    sed 's|^|*/|' | xargs dpkg -S | cut -d: -f1 | sort -u)
copy_licences "$folder/licences" "${packages[@]}" qt6-translations-l10n
write_text "$here/../OFFRE.txt" "$folder/licences/OFFRE.txt" "$version"
write_text "$here/LISEZMOI.txt" "$folder/LISEZMOI.txt" "$version" "${PORTABLE_SYSTEM[@]}"

tar --sort=name --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 --numeric-owner \
    -C "$work" -cJf "$work/$name.tar.xz" "$name"
for suite in bookworm trixie; do
    "$here/try.sh" "$suite" "$work/$name.tar.xz" "$work"
done
mv "$work/$name.tar.xz" "$out/"
