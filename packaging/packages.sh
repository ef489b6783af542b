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

    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        echo "Missing packages, and no right to install them: ${missing[*]}" >&2
        return 1
    fi
    echo "Installing: ${missing[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}" || {
        echo "These packages are missing, and could not be fetched: ${missing[*]}" >&2
        return 1
    }
}

# Builds the manual into the folder of a build.
build_manual() # BUILD
{
    need_packages "${MANUAL_PACKAGES[@]}"
    docs/manuel/build.sh "$1/manuel"
}

# Runs the command with the rights of the administrator.
as_root()
{
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# shellcheck disable=SC2034 # for the commands that source this file
{
    BUILD_PACKAGES=(g++ cmake ninja-build qt6-base-dev qt6-translations-l10n)
    TEST_PACKAGES=(clang-format clang-tidy shellcheck desktop-file-utils appstream fonts-dejavu-core
        python3 hunspell hunspell-fr asciidoctor)
    DEMO_PACKAGES=(xvfb xdotool imagemagick)
    MANUAL_PACKAGES=(asciidoctor ruby-asciidoctor-pdf)
    PICTURE_PACKAGES=(optipng at-spi2-core dbus gir1.2-atspi-2.0 python3-gi fonts-dejavu-core)
    PACKAGE_QT=6.4.2
    # Of a package for users: what each of them needs, and what one kind needs besides.
    PACKAGE_PACKAGES=(dpkg-dev file debootstrap xz-utils "${DEMO_PACKAGES[@]}")
    DEB_PACKAGES=(lintian)
    PORTABLE_PACKAGES=(patchelf qt6-wayland)
    # What the folder for any Linux takes from the system.
    PORTABLE_SYSTEM=(libegl1 libglx0 libopengl0 libx11-xcb1 libfontconfig1 libharfbuzz0b libdbus-1-3
        libwayland-client0 fonts-dejavu-core)
    WINDOWS_PACKAGES=(g++-mingw-w64-x86-64-posix wine64 wine fonts-wine nsis openbox)
    BENCH_PACKAGES=(libbenchmark-dev)
}
