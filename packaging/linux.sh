# shellcheck shell=bash
# Sourced by the scripts that make the packages for Linux. Needs packages.sh.

# Builds the program as users run it into FOLDER; what follows are settings for CMake. No path of this
# machine gets into it, and it is linked as Debian links its own programs.
build_linux() # FOLDER SETTING...
{
    local flags="-ffile-prefix-map=$PWD=. -fstack-protector-strong -D_FORTIFY_SOURCE=2"
    cmake --preset release -B "$1" -DCMAKE_CXX_FLAGS="$flags" \
        -DCMAKE_EXE_LINKER_FLAGS=-Wl,-z,relro,-z,now "${@:2}"
    cmake --build "$1"
    build_manual "$1"
}
