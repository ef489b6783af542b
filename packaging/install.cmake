# What an installation holds, and where: on Unix in the folders of the system; on Windows, and with
# VARLUNE_PORTABLE, in one folder that can lie anywhere.
include(GNUInstallDirs)

if(APPLE)
    set(program_folder varlune.app/Contents/MacOS)
    set(document_folder varlune.app/Contents/Resources)
    set(example_folder ${document_folder}/exemples)
    set(manual_folder ${document_folder}/manuel)
elseif(UNIX AND NOT VARLUNE_PORTABLE)
    # The names of the files beside the program are too plain for a folder of all programs.
    set(program_folder lib/varlune)
    set(document_folder ${CMAKE_INSTALL_DATADIR}/doc/varlune)
    set(example_folder ${document_folder}/examples)
    set(manual_folder ${document_folder})
else()
    set(program_folder .)
    set(document_folder .)
    set(example_folder exemples)
    set(manual_folder manuel)
endif()

install(TARGETS ${programs}
    RUNTIME DESTINATION ${program_folder}
    BUNDLE DESTINATION .)
install(CODE "
    set(PROGRAM_FOLDER ${program_folder})
    include(\"${PROJECT_SOURCE_DIR}/packaging/settings.cmake\")")
install(DIRECTORY exemples/ DESTINATION ${example_folder}
    PATTERN .gitkeep EXCLUDE
    PATTERN demonstration.sh EXCLUDE)
# The manual, where it has been built.
install(FILES ${PROJECT_BINARY_DIR}/manuel/varlune.html ${PROJECT_BINARY_DIR}/manuel/varlune.pdf
    DESTINATION ${manual_folder} OPTIONAL)

if(UNIX AND NOT APPLE AND NOT VARLUNE_PORTABLE)
    install(FILES ${PROJECT_BINARY_DIR}/manuel/varlune.1 ${PROJECT_BINARY_DIR}/manuel/varlune-preparer.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 OPTIONAL)
    install(FILES packaging/debian/copyright CHANGELOG.md DESTINATION ${document_folder})
    install(FILES packaging/varlune.desktop packaging/varlune-preparer.desktop
        DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    install(FILES packaging/varlune.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
    set(theme ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
    install(DIRECTORY icones/hicolor/ DESTINATION ${theme})
    foreach(program ${programs})
        install(FILES icones/logo_${program}.png RENAME ${program}.png
            DESTINATION ${theme}/256x256/apps)
        install(FILES icones/svg/logo_${program}.svg RENAME ${program}.svg
            DESTINATION ${theme}/scalable/apps)
    endforeach()
else()
    install(FILES LICENSE CHANGELOG.md DESTINATION ${document_folder})
endif()
