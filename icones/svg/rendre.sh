#!/usr/bin/env bash
# Renders the SVG sources of this folder:
#   ../NAME.png               each icon, 32 x 32
#   ../logo_varlune.png       the logo, 256 x 256
#   ../ico/logo_varlune.ico   the logo, 16 to 256 pixels
#   ../ico/logo_varlune.icns  the same for macOS, which knows 16, 32, 48, 128 and 256 pixels
#   ../hicolor/               the logo in the sizes of a desktop's icon theme, but for 256
# Needs rsvg-convert (Debian: librsvg2-bin), icotool (Debian: icoutils) and png2icns (Debian: icnsutils).
set -euo pipefail
export LC_ALL=C

here="$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)"
out="$(dirname -- "$here")"
logo="$here/logo_varlune.svg"

for tool in rsvg-convert icotool png2icns; do
    if ! command -v "$tool" >/dev/null; then
        echo "rendre.sh: $tool not found" >&2
        exit 1
    fi
done

work="$(mktemp -d)"
trap 'rm -rf -- "$work"' EXIT

# render SVG SIZE PNG
render() {
    rsvg-convert --width="$2" --height="$2" --format=png --output="$3" "$1"
}

for svg in "$here"/*.svg; do
    name="$(basename -- "$svg" .svg)"
    if [ "$svg" = "$logo" ]; then
        render "$svg" 256 "$out/$name.png"
    else
        render "$svg" 32 "$out/$name.png"
    fi
done

mkdir -p -- "$out/ico"
images=()
for size in 16 24 32 48 64 128; do
    theme="$out/hicolor/${size}x$size/apps"
    mkdir -p -- "$theme"
    render "$logo" "$size" "$theme/varlune.png"
    images+=("$theme/varlune.png")
done
# The largest image is stored as PNG to keep the file small.
render "$logo" 256 "$work/256.png"
icotool --create --output="$out/ico/logo_varlune.ico" "${images[@]}" --raw="$work/256.png"
png2icns "$out/ico/logo_varlune.icns" "$out"/hicolor/{16x16,32x32,48x48,128x128}/apps/varlune.png \
    "$out/logo_varlune.png" >/dev/null
