# Puts the files of a first start into an installation, whose program lies in PROGRAM_FOLDER below the
# prefix, and links what else has to be found in the folders of the system. Those who install the
# program on Unix change the files in the folder of all settings; links to them lie beside the program.
set(prefix "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")
set(program "${prefix}/${PROGRAM_FOLDER}")

function(link name target)
    if(NOT EXISTS "${name}" AND NOT IS_SYMLINK "${name}")
        file(CREATE_LINK "${target}" "${name}" SYMBOLIC)
    endif()
endfunction()

if(NOT PROGRAM_FOLDER STREQUAL "lib/varlune")
    set(FOLDER "${program}")
    include("${CMAKE_CURRENT_LIST_DIR}/first_start.cmake")
    return()
endif()

if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
    set(settings /etc/varlune)
else()
    set(settings "${CMAKE_INSTALL_PREFIX}/etc/varlune")
endif()
set(FOLDER "$ENV{DESTDIR}${settings}")
include("${CMAKE_CURRENT_LIST_DIR}/first_start.cmake")
link("${program}/PARAM.INI" "${settings}/PARAM.INI")
link("${program}/SEQUENCE.INI" "${settings}/SEQUENCE.INI")

file(MAKE_DIRECTORY "${prefix}/bin")
foreach(name varlune varlune-preparer)
    link("${prefix}/bin/${name}" "../lib/varlune/${name}")
endforeach()
