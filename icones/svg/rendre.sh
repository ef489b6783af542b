#!/usr/bin/env bash
# Renders the SVG sources of this folder:
#   ../NAME.png               each icon, 32 x 32
#   ../logo_NAME.png          the logo of each program, 256 x 256
#   ../ico/logo_NAME.ico      the same, 16 to 256 pixels
#   ../ico/logo_NAME.icns     the same for macOS, which knows 16, 32, 48, 128 and 256 pixels
#   ../hicolor/               the same in the sizes of a desktop's icon theme, but for 256
# Needs rsvg-convert (Debian: librsvg2-bin), icotool (Debian: icoutils) and png2icns (Debian: icnsutils).
set -euo pipefail
export LC_ALL=C

here="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)"
out="$(dirname -- "$here")"

for tool in rsvg-convert icotool png2icns; do
    if ! command -v "$tool" >/dev/null; then
        echo "rendre.sh: $tool not found" >&2
        exit 1
    fi
done

# render SVG SIZE PNG
render() {
    rsvg-convert --width="$2" --height="$2" --format=png --output="$3" "$1"
}

# render_logo SVG PROGRAM
render_logo() {
    local images=() size theme
    for size in 16 24 32 48 64 128; do
        theme="$out/hicolor/${size}x$size/apps"
        mkdir -p -- "$theme"
        render "$1" "$size" "$theme/$2.png"
        images+=("$theme/$2.png")
    done
    # The largest image is stored as PNG to keep the file small.
    render "$1" 256 "$out/logo_$2.png"
    icotool --create --output="$out/ico/logo_$2.ico" "${images[@]}" --raw="$out/logo_$2.png"
    png2icns "$out/ico/logo_$2.icns" "$out"/hicolor/{16x16,32x32,48x48,128x128}/apps/"$2.png" \
        "$out/logo_$2.png" >/dev/null
}

mkdir -p -- "$out/ico"
for svg in "$here"/*.svg; do
    name="$(basename -- "$svg" .svg)"
    case "$name" in
    logo_*) render_logo "$svg" "${name#logo_}" ;;
    *) render "$svg" 32 "$out/$name.png" ;;
    esac
done
