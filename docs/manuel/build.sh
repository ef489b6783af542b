#!/usr/bin/env bash
# Builds the manual into one page of HTML with its pictures and a PDF, and the man pages.
#
#   build.sh FOLDER [--html]     --html: that page only
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
mkdir -p "$1"
folder=$(realpath "$1")

# The program's version has one source, the class of the About box. A warning ends the build.
version=$(sed -n 's/.*u"v\([0-9.]*\)"_s.*/\1/p' "$here/../../src/fenapropos.cpp")
options=(-v --failure-level=INFO -r "$here/pictures.rb" -a "revnumber=$version" -D "$folder")

asciidoctor "${options[@]}" -a data-uri -o varlune.html "$here/manuel.adoc"
[ "${2:-}" != --html ] || exit 0
asciidoctor-pdf "${options[@]}" -a icons=font -a pdf-themesdir="$here" -a pdf-theme=varlune \
    -a allow-uri-read! -o varlune.pdf "$here/manuel.adoc"
for page in "$here"/*.1.adoc; do
    asciidoctor "${options[@]}" -b manpage "$page"
done
