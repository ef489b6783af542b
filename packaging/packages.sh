# shellcheck shell=bash
# Sourced by the commands of this project: need_packages installs what is missing of the Debian
# packages that it is given, as root or with sudo, and asks nothing where nothing is missing.

need_packages()
{
    local missing=() package
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages, and no right to install them: ${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# shellcheck disable=SC2034 # for the commands that source this file
{
    BUILD_PACKAGES=(g++ cmake ninja-build qt6-base-dev qt6-translations-l10n)
    TEST_PACKAGES=(clang-format clang-tidy shellcheck desktop-file-utils appstream fonts-dejavu-core
        python3 hunspell hunspell-fr asciidoctor)
    DEMO_PACKAGES=(xvfb xdotool imagemagick)
    MANUAL_PACKAGES=(asciidoctor ruby-asciidoctor-pdf)
    PICTURE_PACKAGES=(optipng at-spi2-core dbus gir1.2-atspi-2.0 python3-gi fonts-dejavu-core)
    BENCH_PACKAGES=(libbenchmark-dev)
}
