# Cross-compiles for 64-bit Windows with Debian's mingw-w64, in its variant with the C++ threads.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triple x86_64-w64-mingw32)
set(CMAKE_C_COMPILER /usr/bin/${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER /usr/bin/${triple}-g++-posix)
set(CMAKE_RC_COMPILER /usr/bin/${triple}-windres)
set(CMAKE_AR /usr/bin/${triple}-gcc-ar-posix CACHE FILEPATH "")
set(CMAKE_RANLIB /usr/bin/${triple}-gcc-ranlib-posix CACHE FILEPATH "")

# The Qt that packaging/windows/qt.sh has built here.
get_filename_component(windows_qt "${CMAKE_CURRENT_LIST_DIR}/../../build/package/qt" ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH ${windows_qt} /usr/${triple})
set(CMAKE_PREFIX_PATH ${windows_qt})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# moc and rcc are those of Debian's own Qt, of the same version; its CMake files lie in a folder that
# is named after the processor.
set(QT_HOST_PATH /usr CACHE PATH "")
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake CACHE PATH "")
# Debian's rcc packs with zstd, which that Qt does not read.
set(CMAKE_AUTORCC_OPTIONS --no-zstd)
