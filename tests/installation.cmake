# Installs the BUILD below FOLDER, which is removed again, as a package does, and once more over settings
# that have been changed.
function(install_to_folder)
    set(ENV{DESTDIR} "${FOLDER}")
    execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix /usr
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(expect_link name target)
    file(READ_SYMLINK "${FOLDER}/${name}" found)
    if(NOT found STREQUAL target)
        message(FATAL_ERROR "${name} is a link to ${found}, not to ${target}")
    endif()
endfunction()

function(expect_same name source)
    file(SHA256 "${FOLDER}/${name}" found)
    file(SHA256 "${source}" expected)
    if(NOT found STREQUAL expected)
        message(FATAL_ERROR "${name} is not what ${source} is")
    endif()
endfunction()

file(REMOVE_RECURSE "${FOLDER}")
set(packaging ${CMAKE_CURRENT_LIST_DIR}/../packaging)

install_to_folder()
expect_link(usr/bin/varlune ../lib/varlune/varlune)
expect_link(usr/bin/varlune-preparer ../lib/varlune/varlune-preparer)
expect_link(usr/lib/varlune/PARAM.INI /etc/varlune/PARAM.INI)
expect_link(usr/lib/varlune/SEQUENCE.INI /etc/varlune/SEQUENCE.INI)
expect_same(etc/varlune/PARAM.INI ${packaging}/PARAM.INI)
expect_same(etc/varlune/SEQUENCE.INI ${packaging}/SEQUENCE.INI)
expect_same(usr/share/doc/varlune/examples/famille.ged ${packaging}/../exemples/famille.ged)
set(icons ${packaging}/../icones)
set(theme usr/share/icons/hicolor)
foreach(program varlune varlune-preparer)
    expect_same(usr/share/applications/${program}.desktop ${packaging}/${program}.desktop)
    foreach(size 16 24 32 48 64 128)
        expect_same(${theme}/${size}x${size}/apps/${program}.png
            ${icons}/hicolor/${size}x${size}/apps/${program}.png)
    endforeach()
    expect_same(${theme}/256x256/apps/${program}.png ${icons}/logo_${program}.png)
    expect_same(${theme}/scalable/apps/${program}.svg ${icons}/svg/logo_${program}.svg)
endforeach()
# A file manager offers the companion for a file, and gives it that.
file(READ "${FOLDER}/usr/share/applications/varlune-preparer.desktop" entry)
foreach(line "Exec=varlune-preparer %f" "Icon=varlune-preparer"
        "MimeType=[^\n]*text/vnd.familysearch.gedcom" "MimeType=[^\n]*application/x-gedcom")
    if(NOT entry MATCHES "\n${line}[\n;]")
        message(FATAL_ERROR "varlune-preparer.desktop does not say ${line}")
    endif()
endforeach()

file(APPEND "${FOLDER}/etc/varlune/PARAM.INI" "delTags=true\n")
file(COPY_FILE "${FOLDER}/etc/varlune/PARAM.INI" "${FOLDER}/changed")
install_to_folder()
expect_same(etc/varlune/PARAM.INI "${FOLDER}/changed")
expect_link(usr/lib/varlune/PARAM.INI /etc/varlune/PARAM.INI)

file(REMOVE_RECURSE "${FOLDER}")
