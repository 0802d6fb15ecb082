# The package file that libzip brings along insists on its command-line tools, which distributions
# pack separately. Defines the imported target LibZip::LibZip.

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(PC_LIBZIP QUIET libzip)
endif()

find_path(LIBZIP_INCLUDE_DIR zip.h HINTS ${PC_LIBZIP_INCLUDE_DIRS})
find_library(LIBZIP_LIBRARY zip HINTS ${PC_LIBZIP_LIBRARY_DIRS})
mark_as_advanced(LIBZIP_INCLUDE_DIR LIBZIP_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LibZip
  REQUIRED_VARS LIBZIP_LIBRARY LIBZIP_INCLUDE_DIR
  VERSION_VAR PC_LIBZIP_VERSION)

if(LibZip_FOUND AND NOT TARGET LibZip::LibZip)
  add_library(LibZip::LibZip UNKNOWN IMPORTED)
  set_target_properties(LibZip::LibZip PROPERTIES
    IMPORTED_LOCATION "${LIBZIP_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${LIBZIP_INCLUDE_DIR}")
endif()
