# Holds what tells version and date by itself against the About box: the newest release of the metadata,
# the heading of the changelog, the packages that the README and the manual name, and the version that
# the program was built with, VERSION.
include(${CMAKE_CURRENT_LIST_DIR}/../packaging/release.cmake)
set(project "${CMAKE_CURRENT_LIST_DIR}/..")

if(NOT VERSION STREQUAL varlune_version)
    message(FATAL_ERROR "The build has version ${VERSION}, the About box ${varlune_version}")
endif()

file(READ "${project}/packaging/varlune.metainfo.xml" metadata)
string(REGEX MATCH "<release [^>]*>" newest "${metadata}")
if(NOT newest STREQUAL "<release version=\"${varlune_version}\" date=\"${varlune_date}\">")
    message(FATAL_ERROR "packaging/varlune.metainfo.xml: the newest release is ${newest}, "
        "the About box tells ${varlune_version} of ${varlune_date}")
endif()

file(STRINGS "${project}/CHANGELOG.md" headings REGEX "^## [0-9]")
list(GET headings 0 newest)
if(NOT newest STREQUAL "## ${varlune_version} (${varlune_date})")
    message(FATAL_ERROR "CHANGELOG.md: the newest release is \"${newest}\", "
        "the About box tells ${varlune_version} of ${varlune_date}")
endif()

foreach(page README.md docs/manuel/01-premiere-heure.adoc)
    file(READ "${project}/${page}" text)
    string(REGEX MATCHALL "varlune[-_][0-9]+[.][0-9.]*[0-9]" packages "${text}")
    if(NOT packages)
        message(FATAL_ERROR "${page} names no package")
    endif()
    foreach(package IN LISTS packages)
        string(REGEX REPLACE "^varlune[-_]" "" version ${package})
        if(NOT version STREQUAL varlune_version)
            message(FATAL_ERROR "${page} names ${package}, the About box tells ${varlune_version}")
        endif()
    endforeach()
endforeach()
