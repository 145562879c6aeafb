set(CPACK_GENERATOR TGZ DEB)
set(CPACK_PACKAGE_NAME kelvo)
set(CPACK_PACKAGE_VENDOR "kelvo maintainers")
set(CPACK_PACKAGE_CONTACT "kelvo maintainers <maintainers@kelvo.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "set up small graphic display terminals over a serial port")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"kelvo reads and sets what a small monochrome graphic display terminal is,
writes macros, keyboard tables and bitmaps into its EEPROM, draws pictures
pixel by pixel as the terminal will show them, and sends them to one terminal
or to a whole RS-485 bus of them, proven by checksum. The operator's work is
kept in one local database. The user interface is German.
.
A simulated terminal comes with it, so that everything can be tried without
hardware.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# A component of its own for each.
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_ARCHIVE_FILE_NAME kelvo-${PROJECT_VERSION}-linux-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_PACKAGE_FILE_NAME ${CPACK_ARCHIVE_FILE_NAME})

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION comm)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time, so that no library names them: the German texts of the toolkit's own dialogs,
# and the database behind the help's search.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-translations-l10n, libqt6sql6-sqlite")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")

set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/cpack_generator.cmake)
include(CPack)
