# The Debian package; ./package makes it, and proves it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "Varlune")
set(CPACK_PACKAGE_CONTACT "The Varlune developers <contact@varlune.example>")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://varlune.example/")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "rework a GEDCOM file in batches, with a journal")
set(CPACK_PACKAGE_DESCRIPTION_FILE "${PROJECT_SOURCE_DIR}/packaging/debian/description")
# The settings lie outside the prefix.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "shared-mime-info, qt6-wayland")
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# What the administrator has changed in these files survives an upgrade.
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/packaging/debian/conffiles")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/debian/finish.cmake")
include(CPack)
