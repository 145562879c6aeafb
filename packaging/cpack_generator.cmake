# Read by cpack for each generator.
if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_COMPONENTS_ALL system)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
else()
  set(CPACK_COMPONENTS_ALL portable)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)  # unpacks to one folder
endif()
