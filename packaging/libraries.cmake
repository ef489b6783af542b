# Copies into INTO the libraries that the programs and plugins below FOLDER load, and those that these
# load, but for the ones that the system must have itself, whose names match LEFT. SEARCHED, for Windows,
# lists the folders where they are; what is in none of them is Windows's own.
if(SEARCHED)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_PLATFORM windows+pe)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_TOOL objdump)
    set(CMAKE_GET_RUNTIME_DEPENDENCIES_COMMAND x86_64-w64-mingw32-objdump)
    file(GLOB programs "${FOLDER}/*.exe")
    file(GLOB_RECURSE plugins "${FOLDER}/*.dll")
else()
    set(programs "${FOLDER}/varlune" "${FOLDER}/varlune-preparer")
    file(GLOB_RECURSE plugins "${FOLDER}/*.so")
endif()

file(GET_RUNTIME_DEPENDENCIES
    EXECUTABLES ${programs}
    MODULES ${plugins}
    DIRECTORIES ${SEARCHED}
    PRE_EXCLUDE_REGEXES ${LEFT}
    RESOLVED_DEPENDENCIES_VAR libraries
    UNRESOLVED_DEPENDENCIES_VAR missing)
if(missing AND NOT SEARCHED)
    message(FATAL_ERROR "These libraries are missing: ${missing}")
endif()
foreach(library ${libraries})
    if(SEARCHED)
        file(REAL_PATH "${library}" library)
    endif()
    file(COPY "${library}" DESTINATION "${INTO}" FOLLOW_SYMLINK_CHAIN)
endforeach()
