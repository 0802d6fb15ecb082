# libsodium comes without a CMake package file. Defines the imported target sodium::sodium.

include(CarriedLibrary)

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(PC_SODIUM QUIET libsodium)
endif()

find_path(SODIUM_INCLUDE_DIR sodium.h HINTS ${PC_SODIUM_INCLUDE_DIRS})
find_library(SODIUM_LIBRARY sodium HINTS ${PC_SODIUM_LIBRARY_DIRS})
find_library(SODIUM_STATIC_LIBRARY libsodium.a HINTS ${PC_SODIUM_LIBRARY_DIRS})
mark_as_advanced(SODIUM_INCLUDE_DIR SODIUM_LIBRARY SODIUM_STATIC_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Sodium
  REQUIRED_VARS SODIUM_LIBRARY SODIUM_INCLUDE_DIR
  VERSION_VAR PC_SODIUM_VERSION)

if(Sodium_FOUND AND NOT TARGET sodium::sodium)
  larkspur_carried_library(sodium::sodium
    SHARED ${SODIUM_LIBRARY} STATIC ${SODIUM_STATIC_LIBRARY} INCLUDE ${SODIUM_INCLUDE_DIR})
endif()
