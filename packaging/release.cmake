# Reads the version of the program and the date of its release from the About box, which is their one
# source: varlune_version (1.9.0) and varlune_date (2024-08-23). As a script, "cmake -P", it prints them.
set(about "${CMAKE_CURRENT_LIST_DIR}/../src/fenapropos.cpp")
set(months janvier février mars avril mai juin juillet août septembre octobre novembre décembre)

file(READ "${about}" text)
if(NOT text MATCHES "\"v([0-9.]+)\"")
    message(FATAL_ERROR "src/fenapropos.cpp tells no version")
endif()
set(varlune_version ${CMAKE_MATCH_1})

if(NOT text MATCHES " du ([0-9]+)e?r? ([^ ]+) ([0-9]+)\"")
    message(FATAL_ERROR "src/fenapropos.cpp tells no date")
endif()
set(day ${CMAKE_MATCH_1})
set(year ${CMAKE_MATCH_3})
list(FIND months ${CMAKE_MATCH_2} month)
if(month EQUAL -1)
    message(FATAL_ERROR "src/fenapropos.cpp tells a month that there is not: ${CMAKE_MATCH_2}")
endif()
math(EXPR month "${month} + 1")
string(REGEX REPLACE "^(.)$" "0\\1" month ${month})
string(REGEX REPLACE "^(.)$" "0\\1" day ${day})
set(varlune_date ${year}-${month}-${day})

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
    execute_process(COMMAND ${CMAKE_COMMAND} -E echo "${varlune_version} ${varlune_date}")
endif()
