# Puts the files of a first start twice into FOLDER, which is removed again, from PACKAGING: the
# second time the user has changed the one and taken the other away.
function(put_files)
    execute_process(COMMAND ${CMAKE_COMMAND} -D FOLDER=${FOLDER} -P ${PACKAGING}/first_start.cmake
        RESULT_VARIABLE result)
    if(result)
        message(FATAL_ERROR "first_start.cmake fails: ${result}")
    endif()
endfunction()

function(expect_content name expected)
    if(NOT EXISTS "${FOLDER}/${name}")
        message(FATAL_ERROR "${name} is missing")
    endif()
    file(READ "${FOLDER}/${name}" content HEX)
    if(NOT content STREQUAL expected)
        message(FATAL_ERROR "${name} has another content than expected")
    endif()
endfunction()

file(REMOVE_RECURSE "${FOLDER}")
file(READ "${PACKAGING}/PARAM.INI" parameters HEX)
file(READ "${PACKAGING}/SEQUENCE.INI" sequence HEX)

put_files()
expect_content(PARAM.INI "${parameters}")
expect_content(SEQUENCE.INI "${sequence}")

file(APPEND "${FOLDER}/PARAM.INI" "delTags=true\n")
file(READ "${FOLDER}/PARAM.INI" changed HEX)
file(REMOVE "${FOLDER}/SEQUENCE.INI")
put_files()
expect_content(PARAM.INI "${changed}")
expect_content(SEQUENCE.INI "${sequence}")

file(REMOVE_RECURSE "${FOLDER}")
