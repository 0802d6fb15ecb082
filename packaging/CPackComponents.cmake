# Read by CPack once for each kind of package: which parts of the installation go in.

set(components documents)
if(CPACK_GENERATOR STREQUAL "DEB")
  list(APPEND components programs debian)
else()
  list(APPEND components portable)
endif()

set(CPACK_INSTALL_CMAKE_PROJECTS "")
foreach(component IN LISTS components)
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS
    ${CPACK_LARKSPUR_BUILD} ${CPACK_PACKAGE_NAME} ${component} /)
endforeach()
