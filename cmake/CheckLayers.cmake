# Makes the layers binding: a folder of src/ includes itself and the folders below it, never one
# above.
#
#   cmake -D SOURCE_ROOT=<project folder> -P CheckLayers.cmake
#
# Reads the #include lines, and in src/ and apps/ the lines that ask which system this is: CMake
# chooses the sources of a system. Prints one line per violation and fails when there is one.

cmake_minimum_required(VERSION 3.25)

if(NOT DEFINED SOURCE_ROOT)
  message(FATAL_ERROR "SOURCE_ROOT is not set")
endif()

# What each folder may include besides itself. roster and workouts are strangers to each other;
# "main" is src/main.cpp.
set(below_platform)
set(below_roster platform)
set(below_workouts platform)
set(below_summary roster workouts ${below_roster})
set(below_store summary ${below_summary})
set(below_tools store ${below_store})
set(below_server tools ${below_tools})
set(below_main server ${below_server})
set(layers platform roster workouts summary store tools server)

set(include_line "^[ \t]*#[ \t]*include[ \t]*([\"<])([^\">]+)[\">]")
set(violations "")

macro(violation text)
  string(APPEND violations "  ${file}: ${text}\n")
endmacro()

# A header of ours is named from src/, in double quotes: "store/Database.h". Then its first folder
# is its layer.
function(check_source_include layer quote header)
  string(REGEX MATCH "^[^/]+" target "${header}")
  if(NOT quote STREQUAL "\"" AND NOT target IN_LIST layers)
    return()
  endif()
  if(NOT quote STREQUAL "\"")
    violation("<${header}> is a header of ours and belongs in double quotes")
  elseif(target IN_LIST layers AND header MATCHES "/")
    if(NOT target STREQUAL layer AND NOT target IN_LIST below_${layer})
      violation("${layer} may not include \"${header}\"")
    endif()
  else()
    violation("\"${header}\" is not named from src/ by a folder of the layers")
  endif()
  set(violations "${violations}" PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE files RELATIVE ${SOURCE_ROOT}
  ${SOURCE_ROOT}/src/*.h ${SOURCE_ROOT}/src/*.cpp
  ${SOURCE_ROOT}/apps/*.h ${SOURCE_ROOT}/apps/*.cpp
  ${SOURCE_ROOT}/tests/*.h ${SOURCE_ROOT}/tests/*.cpp
  ${SOURCE_ROOT}/bench/*.h ${SOURCE_ROOT}/bench/*.cpp
  ${SOURCE_ROOT}/fuzz/*.h ${SOURCE_ROOT}/fuzz/*.cpp)
list(FILTER files EXCLUDE REGEX "/node_modules/")
list(SORT files)

set(sources ${files})
list(FILTER sources INCLUDE REGEX "^src/")
if(NOT sources)
  message(FATAL_ERROR "no sources under ${SOURCE_ROOT}/src")
endif()

foreach(file IN LISTS files)
  set(layer "")
  if(file STREQUAL "src/main.cpp")
    set(layer main)
  elseif(file MATCHES "^src/([^/]+)/" AND CMAKE_MATCH_1 IN_LIST layers)
    set(layer ${CMAKE_MATCH_1})
  elseif(file MATCHES "^src/")
    violation("is in no folder of the layers")
    continue()
  endif()

  file(STRINGS ${SOURCE_ROOT}/${file} lines REGEX "${include_line}" ENCODING UTF-8)
  foreach(line IN LISTS lines)
    string(REGEX MATCH "${include_line}" ignored "${line}")
    set(quote "${CMAKE_MATCH_1}")
    set(header "${CMAKE_MATCH_2}")

    if(header MATCHES "(^|/)sqlite3(ext)?\\.h$")
      if(NOT file MATCHES "^src/store/[^/]+\\.cpp$")
        violation("sqlite3.h is for the sources of store/ alone, store/Database.h for the others")
      endif()
    elseif(layer)
      check_source_include(${layer} "${quote}" "${header}")
    elseif(file MATCHES "^apps/" AND header MATCHES "^(server|tests|support)/")
      violation("an app may not include \"${header}\"")
    endif()
  endforeach()

  if(file MATCHES "^(src|apps)/")
    file(STRINGS ${SOURCE_ROOT}/${file} questions REGEX "^[ \t]*#.*__(APPLE|linux)__" ENCODING UTF-8)
    if(questions)
      violation("asks which system it is compiled for, which CMake decides by its choice of sources")
    endif()
  endif()
endforeach()

if(violations)
  message(FATAL_ERROR "The layers do not hold:\n${violations}")
endif()
list(LENGTH files count)
message(STATUS "The layers hold in ${count} files")
