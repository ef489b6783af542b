# Run by CPack once all is in the folder that becomes the package: what Debian wants of a package, but
# nobody else.
set(usr "${CPACK_TEMPORARY_DIRECTORY}/usr")
set(documents "${usr}/share/doc/varlune")

file(RENAME "${documents}/CHANGELOG.md" "${documents}/changelog")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # of SOURCE_DATE_EPOCH, where that is set
file(WRITE "${documents}/changelog.Debian"
    "varlune (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) stable; urgency=medium\n\n"
    "  * Release ${CPACK_PACKAGE_VERSION}; what has changed is in the file changelog.\n\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")

file(GLOB_RECURSE pages "${usr}/share/man/*.1")
execute_process(
    COMMAND gzip -9n "${documents}/changelog" "${documents}/changelog.Debian" ${pages}
    COMMAND_ERROR_IS_FATAL ANY)

file(GLOB programs "${usr}/lib/varlune/varlune*")
execute_process(
    COMMAND strip --strip-unneeded --remove-section=.comment --remove-section=.note ${programs}
    COMMAND_ERROR_IS_FATAL ANY)

file(MAKE_DIRECTORY "${usr}/share/doc-base")
file(COPY_FILE "${CMAKE_CURRENT_LIST_DIR}/doc-base" "${usr}/share/doc-base/varlune.varlune")

file(MAKE_DIRECTORY "${usr}/share/lintian/overrides")
file(COPY_FILE "${CMAKE_CURRENT_LIST_DIR}/lintian-overrides" "${usr}/share/lintian/overrides/varlune")
