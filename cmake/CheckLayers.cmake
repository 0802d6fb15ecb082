# Makes the layers binding: a folder includes itself and the folders below it, never one above, and
# no program another.
#
#   cmake -D SOURCE_ROOT=<project folder> -P CheckLayers.cmake
#
# Reads the #include lines, and in src/ and apps/ the lines that ask which system this is: CMake
# chooses the sources of a system. Prints one line per violation and fails when there is one.

cmake_minimum_required(VERSION 3.25)

if(NOT DEFINED SOURCE_ROOT)
  message(FATAL_ERROR "SOURCE_ROOT is not set")
endif()

# What each folder of src/ may include besides itself. roster and workouts are strangers to each
# other.
set(below_platform)
set(below_roster platform)
set(below_workouts platform)
set(below_summary roster workouts platform)
set(below_store summary ${below_summary})
set(shared platform roster workouts summary store)

# A program of apps/ may include all of src/ and itself. Its rooms are named where one lies above
# another; what lies in no room, such as its main.cpp, is above them all.
set(programs mcp import report sample)
set(below_mcp_tools "")
set(below_mcp_server tools)

set(include_line "^[ \t]*#[ \t]*include[ \t]*([\"<])([^\">]+)[\">]")
set(violations "")

macro(violation text)
  string(APPEND violations "  ${file}: ${text}\n")
endmacro()

# A header of ours is named from src/ or apps/, in double quotes: "store/Database.h",
# "mcp/tools/Tools.h". Then its first folder is its layer or its program. `owner` is where the
# including file lies: a layer, or a program.
function(check_include owner room quote header)
  string(REGEX MATCH "^[^/]+" target "${header}")
  set(ours ${shared} ${programs})
  if(NOT quote STREQUAL "\"")
    if(target IN_LIST ours AND header MATCHES "/")
      violation("<${header}> is a header of ours and belongs in double quotes")
    endif()
  elseif(NOT target IN_LIST ours OR NOT header MATCHES "/")
    violation("\"${header}\" is named neither from src/ nor from apps/ by a folder of the layers")
  elseif(owner IN_LIST shared)
    if(NOT target STREQUAL owner AND NOT target IN_LIST below_${owner})
      violation("${owner} may not include \"${header}\"")
    endif()
  elseif(target IN_LIST programs)
    if(NOT target STREQUAL owner)
      violation("${owner} may not include \"${header}\" of another program")
    elseif(header MATCHES "^[^/]+/([^/]+)/" AND room AND DEFINED below_${owner}_${room})
      set(wanted ${CMAKE_MATCH_1})
      if(NOT wanted STREQUAL room AND NOT wanted IN_LIST below_${owner}_${room})
        violation("${owner}/${room} may not include \"${header}\"")
      endif()
    elseif(room AND DEFINED below_${owner}_${room})
      violation("${owner}/${room} may not include \"${header}\"")
    endif()
  endif()
  set(violations "${violations}" PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE files RELATIVE ${SOURCE_ROOT}
  ${SOURCE_ROOT}/src/*.h ${SOURCE_ROOT}/src/*.cpp
  ${SOURCE_ROOT}/apps/*.h ${SOURCE_ROOT}/apps/*.cpp
  ${SOURCE_ROOT}/examples/*.h ${SOURCE_ROOT}/examples/*.cpp
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
  set(owner "")
  set(room "")
  if(file MATCHES "^src/([^/]+)/" AND CMAKE_MATCH_1 IN_LIST shared)
    set(owner ${CMAKE_MATCH_1})
  elseif(file MATCHES "^apps/([^/]+)/(([^/]+)/)?" AND CMAKE_MATCH_1 IN_LIST programs)
    set(owner ${CMAKE_MATCH_1})
    set(room ${CMAKE_MATCH_3})
  elseif(file MATCHES "^(src|apps)/")
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
    elseif(owner)
      check_include(${owner} "${room}" "${quote}" "${header}")
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
