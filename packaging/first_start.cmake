# Puts the two files that the program reads beside itself into FOLDER, where they are missing: what
# the user has changed there stays.
foreach(name PARAM.INI SEQUENCE.INI)
    if(NOT EXISTS "${FOLDER}/${name}")
        file(COPY "${CMAKE_CURRENT_LIST_DIR}/${name}" DESTINATION "${FOLDER}")
    endif()
endforeach()
