# libsodium comes without a CMake package file. Defines the imported target sodium::sodium.

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(PC_SODIUM QUIET libsodium)
endif()

find_path(SODIUM_INCLUDE_DIR sodium.h HINTS ${PC_SODIUM_INCLUDE_DIRS})
find_library(SODIUM_LIBRARY sodium HINTS ${PC_SODIUM_LIBRARY_DIRS})
mark_as_advanced(SODIUM_INCLUDE_DIR SODIUM_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Sodium
  REQUIRED_VARS SODIUM_LIBRARY SODIUM_INCLUDE_DIR
  VERSION_VAR PC_SODIUM_VERSION)

if(Sodium_FOUND AND NOT TARGET sodium::sodium)
  add_library(sodium::sodium UNKNOWN IMPORTED)
  set_target_properties(sodium::sodium PROPERTIES
    IMPORTED_LOCATION "${SODIUM_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${SODIUM_INCLUDE_DIR}")
endif()
