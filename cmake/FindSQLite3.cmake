# SQLite as CMake's own module finds it, under the same name SQLite::SQLite3, but with the choice
# between the system's copy and one inside the program.

include(CarriedLibrary)

find_package(PkgConfig QUIET)
if(PKG_CONFIG_FOUND)
  pkg_check_modules(PC_SQLITE3 QUIET sqlite3)
endif()

find_path(SQLite3_INCLUDE_DIR sqlite3.h HINTS ${PC_SQLITE3_INCLUDE_DIRS})
find_library(SQLite3_LIBRARY sqlite3 HINTS ${PC_SQLITE3_LIBRARY_DIRS})
find_library(SQLite3_STATIC_LIBRARY libsqlite3.a HINTS ${PC_SQLITE3_LIBRARY_DIRS})
mark_as_advanced(SQLite3_INCLUDE_DIR SQLite3_LIBRARY SQLite3_STATIC_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(SQLite3
  REQUIRED_VARS SQLite3_LIBRARY SQLite3_INCLUDE_DIR
  VERSION_VAR PC_SQLITE3_VERSION)

if(SQLite3_FOUND AND NOT TARGET SQLite::SQLite3)
  larkspur_carried_library(SQLite::SQLite3
    SHARED ${SQLite3_LIBRARY} STATIC ${SQLite3_STATIC_LIBRARY} INCLUDE ${SQLite3_INCLUDE_DIR})
endif()
