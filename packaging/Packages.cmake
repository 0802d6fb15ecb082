# The packages: a .deb for Debian and its kin, whose programs share the system's libraries; a .tar.gz
# and a client bundle for every other Linux, whose server carries them. `make package` builds and
# tests them.

if(NOT LARKSPUR_SANDBOX)
  message(FATAL_ERROR "A package without LARKSPUR_SANDBOX would not keep what SECURITY.md promises.")
endif()

set(LARKSPUR_MAINTAINER_NAME "larkspur-mcp maintainers"
  CACHE STRING "Who answers for the packages")
set(LARKSPUR_MAINTAINER_MAIL "maintainers@larkspur.example"
  CACHE STRING "Where they are reached")
set(LARKSPUR_MAINTAINER "${LARKSPUR_MAINTAINER_NAME} <${LARKSPUR_MAINTAINER_MAIL}>")

# The moment that all packages bear: the builder's, else that of the last commit. So the same
# sources make the same packages.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  execute_process(
    COMMAND git log -1 --format=%ct
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    OUTPUT_VARIABLE moment
    OUTPUT_STRIP_TRAILING_WHITESPACE
    ERROR_QUIET)
  if(NOT moment)
    string(TIMESTAMP moment "%s" UTC)
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${moment})
endif()
set(at_that_moment ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=$ENV{SOURCE_DATE_EPOCH})

# The program again, linked from the same libraries of ours with everything else but the C library
# inside. libzip has no static form to carry, so the import program leaves it outside.
function(larkspur_portable program)
  foreach(property IN ITEMS SOURCES SOURCE_DIR LINK_LIBRARIES COMPILE_DEFINITIONS)
    get_target_property(${property} ${program} ${property})
  endforeach()
  list(TRANSFORM SOURCES PREPEND ${SOURCE_DIR}/)
  add_executable(${program}-portable ${SOURCES})
  target_link_libraries(${program}-portable PRIVATE ${LINK_LIBRARIES})
  if(COMPILE_DEFINITIONS)
    target_compile_definitions(${program}-portable PRIVATE ${COMPILE_DEFINITIONS})
  endif()
  # Without the unused parts of the libraries it is smaller, and asks for an older C library.
  if(NOT APPLE)
    target_link_options(${program}-portable PRIVATE
      -static-libstdc++ -static-libgcc -Wl,--gc-sections)
  endif()
  set_target_properties(${program}-portable PROPERTIES
    LARKSPUR_CARRIES_LIBRARIES ON
    OUTPUT_NAME ${program}
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/portable)
  install(TARGETS ${program}-portable
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT portable EXCLUDE_FROM_ALL)
endfunction()

set(portables "")
foreach(program IN LISTS programs)
  larkspur_portable(${program})
  list(APPEND portables ${program}-portable)
endforeach()

# Whoever hands on a copy of these libraries hands on their terms; Debian keeps them in one place.
function(larkspur_terms library package component folder)
  set(terms /usr/share/doc/${package}/copyright)
  if(EXISTS ${terms})
    install(FILES ${terms}
      DESTINATION ${folder}/third-party
      RENAME ${library}
      COMPONENT ${component}
      EXCLUDE_FROM_ALL)
  endif()
endfunction()

set(bundle_documents doc)
string(REGEX MATCH "^[0-9]+" compiler ${CMAKE_CXX_COMPILER_VERSION})
larkspur_terms(nlohmann-json nlohmann-json3-dev debian ${CMAKE_INSTALL_DOCDIR})
larkspur_terms(libstdc++ libstdc++-${compiler}-dev debian ${CMAKE_INSTALL_DOCDIR})
foreach(library_and_package IN ITEMS
    "nlohmann-json;nlohmann-json3-dev"
    "libsodium;libsodium-dev"
    "sqlite;libsqlite3-dev"
    "libstdc++;libstdc++-${compiler}-dev")
  larkspur_terms(${library_and_package} portable ${CMAKE_INSTALL_DOCDIR})
  larkspur_terms(${library_and_package} bundle ${bundle_documents})
endforeach()

# Debian's own record of changes, beside ours.
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
string(TIMESTAMP changelog_date "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(debian_changes ${CMAKE_CURRENT_BINARY_DIR}/changelog.Debian)
configure_file(debian/changelog.in ${debian_changes} @ONLY)
larkspur_compressed(${debian_changes} ${debian_changes}.gz)
install(FILES ${debian_changes}.gz
  DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT debian
  EXCLUDE_FROM_ALL)

set(packages ${PROJECT_BINARY_DIR}/packages)
string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
set(package_name ${PROJECT_NAME}-${PROJECT_VERSION}-${system}-${CMAKE_SYSTEM_PROCESSOR})

set(CPACK_GENERATOR DEB TGZ)
if(APPLE)
  set(CPACK_GENERATOR TGZ)
endif()
set(CPACK_PACKAGE_DIRECTORY ${packages})
set(CPACK_PACKAGE_FILE_NAME ${package_name})
set(CPACK_PACKAGE_CONTACT "${LARKSPUR_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
  "An AI client starts larkspur-mcp as a child process and asks it, in the
Model Context Protocol, about the Apple Health data of a household that
lies in SQLite databases on this computer. The databases are opened
read-only, and nothing leaves the computer.")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The days of an imported member are those of a time zone, which the system keeps.
set(CPACK_DEBIAN_PACKAGE_DEPENDS tzdata)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_SOURCE_DIR}/CPackComponents.cmake)
set(CPACK_LARKSPUR_BUILD ${PROJECT_BINARY_DIR})
include(CPack)

# The client bundle.
find_program(LARKSPUR_NODE node REQUIRED)
mark_as_advanced(LARKSPUR_NODE)
set(bundle_machine "${CMAKE_SYSTEM_NAME} on ${CMAKE_SYSTEM_PROCESSOR}")
if(NOT APPLE)
  # A test of the archive holds the program to this.
  string(APPEND bundle_machine " with glibc 2.35 or newer")
endif()
set(bundle_platform ${system})
include(ExampleCalls)
set(bundle_tools "")
set(separator "")
foreach(tool IN LISTS example_tools)
  string(APPEND bundle_tools
    "${separator}\n    {\n      \"name\": \"${tool}\",\n      \"description\": \"${about_${tool}}\"\n    }")
  set(separator ",")
endforeach()
set(manifest ${CMAKE_CURRENT_BINARY_DIR}/manifest.json)
configure_file(bundle/manifest.json.in ${manifest} @ONLY)
install(FILES ${manifest} DESTINATION . COMPONENT bundle EXCLUDE_FROM_ALL)
install(FILES ${documents} debian/copyright
  DESTINATION ${bundle_documents}
  COMPONENT bundle
  EXCLUDE_FROM_ALL)
install(TARGETS larkspur-mcp-portable
  RUNTIME DESTINATION server COMPONENT bundle EXCLUDE_FROM_ALL)

set(bundle_tool ${CMAKE_CURRENT_SOURCE_DIR}/bundle)
set(staged ${CMAKE_CURRENT_BINARY_DIR}/bundle)
add_custom_target(larkspur-packages
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${packages} ${staged}
  COMMAND ${at_that_moment} ${CMAKE_CPACK_COMMAND} --config ${PROJECT_BINARY_DIR}/CPackConfig.cmake
  COMMAND ${CMAKE_COMMAND} -D FOLDER=${bundle_tool}
    -P ${PROJECT_SOURCE_DIR}/tests/e2e/InstallPackages.cmake
  COMMAND ${CMAKE_COMMAND} --install ${PROJECT_BINARY_DIR}
    --component bundle --strip --prefix ${staged}
  COMMAND ${at_that_moment} TZ=UTC0 ${LARKSPUR_NODE} --require ${bundle_tool}/fixed-time.cjs
    ${bundle_tool}/node_modules/@anthropic-ai/mcpb/dist/cli/cli.js
    pack ${staged} ${packages}/${package_name}.mcpb
  DEPENDS larkspur-installed ${portables} ${debian_changes}.gz larkspur-sample
  VERBATIM)
