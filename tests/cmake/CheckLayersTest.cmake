# Plants one small source tree per case and asks cmake/CheckLayers.cmake about it, so that the
# Layers test is known to be able to fail.
#
#   cmake -D CHECK=<CheckLayers.cmake> -D SCRATCH=<folder to use up> -P CheckLayersTest.cmake

cmake_minimum_required(VERSION 3.25)

set(failures "")

# Writes `file` with the one line `include` into an otherwise sound tree. An empty `expected` means
# that the check is to accept it; otherwise the check has to fail and its message has to contain
# `expected`.
function(check_tree name file include expected)
  set(root ${SCRATCH}/${name})
  file(REMOVE_RECURSE ${root})
  file(WRITE ${root}/src/platform/Clock.h "#pragma once\n#include <string>\n")
  file(WRITE ${root}/apps/mcp/main.cpp
    "#include \"mcp/server/MCPServer.h\"\n#include \"store/Database.h\"\n")
  file(WRITE ${root}/${file} "// 中文 [a;b]\n${include}\n#include <vector>\n")

  execute_process(
    COMMAND ${CMAKE_COMMAND} -D SOURCE_ROOT=${root} -P ${CHECK}
    RESULT_VARIABLE status
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  # CMake wraps long messages, which a comparison of words does not care about.
  string(REGEX REPLACE "[ \n]+" " " output "${output}")

  if(expected STREQUAL "")
    if(NOT status EQUAL 0)
      string(APPEND failures "${name}: refused although sound: ${output}\n")
    endif()
  else()
    string(FIND "${output}" "${file}: ${expected}" position)
    if(status EQUAL 0 OR position EQUAL -1)
      string(APPEND failures "${name}: status ${status}, expected \"${expected}\" in: ${output}\n")
    endif()
  endif()
  set(failures "${failures}" PARENT_SCOPE)
endfunction()

set(nowhere "is named neither from src/ nor from apps/ by a folder of the layers")

check_tree(OwnFolder src/store/Database.cpp "#include \"store/Database.h\"" "")
check_tree(FolderBelow src/store/Database.cpp "#include \"platform/AppleFormat.h\"" "")
check_tree(ThirdParty apps/mcp/tools/Trend.cpp "#include <nlohmann/json.hpp>" "")
check_tree(SqliteInStore src/store/Database.cpp "#include <sqlite3.h>" "")
check_tree(ProgramMayUseTheStore apps/sample/Sample.cpp "#include \"store/HealthStore.h\"" "")
check_tree(ProgramMayUseItself apps/import/Import.cpp "#include \"import/xml/Prolog.h\"" "")
check_tree(ServerMayUseTools apps/mcp/server/Methods.cpp "#include \"mcp/tools/Tools.h\"" "")
check_tree(CommentIsNoInclude src/platform/Text.cpp "// like #include \"store/Database.h\"" "")

check_tree(FolderAbove src/summary/Insights.cpp "#include \"store/Database.h\""
  "summary may not include \"store/Database.h\"")
check_tree(FolderAboveWithBlanks src/platform/Text.cpp "  #  include \"store/Database.h\""
  "platform may not include \"store/Database.h\"")
check_tree(RosterAndWorkouts src/roster/Roster.cpp "#include \"workouts/Workouts.h\""
  "roster may not include \"workouts/Workouts.h\"")
check_tree(WorkoutsAndRoster src/workouts/Workouts.h "#include \"roster/Roster.h\""
  "workouts may not include \"roster/Roster.h\"")
check_tree(ProgramFromBelow src/store/Database.cpp "#include \"mcp/tools/Tools.h\""
  "store may not include \"mcp/tools/Tools.h\"")
check_tree(OtherProgram apps/sample/Sample.cpp "#include \"mcp/tools/Tools.h\""
  "sample may not include \"mcp/tools/Tools.h\" of another program")
check_tree(OtherProgramsRoot apps/import/Import.cpp "#include \"sample/Options.h\""
  "import may not include \"sample/Options.h\" of another program")
check_tree(ServerFromTools apps/mcp/tools/Trend.cpp "#include \"mcp/server/MCPServer.h\""
  "mcp/tools may not include \"mcp/server/MCPServer.h\"")
check_tree(MainIsAbove apps/mcp/server/MCPServer.cpp "#include \"mcp/main.cpp\""
  "mcp/server may not include \"mcp/main.cpp\"")
check_tree(AngleBrackets src/summary/Insights.cpp "#include <store/Database.h>"
  "<store/Database.h> is a header of ours and belongs in double quotes")
check_tree(RelativePath src/summary/Insights.cpp "#include \"../store/Database.h\""
  "\"../store/Database.h\" ${nowhere}")
check_tree(NoFolder src/store/Database.cpp "#include \"Database.h\"" "\"Database.h\" ${nowhere}")
check_tree(NoFolderInProgram apps/sample/Sample.cpp "#include \"Sample.h\"" "\"Sample.h\" ${nowhere}")
check_tree(TestsFromSource src/store/Database.cpp "#include \"tests/support/TestDatabase.h\""
  "\"tests/support/TestDatabase.h\" ${nowhere}")
check_tree(TestsFromProgram apps/sample/Sample.cpp "#include \"support/TestDatabase.h\""
  "\"support/TestDatabase.h\" ${nowhere}")
check_tree(NewFolder src/network/Socket.cpp "#include <string>"
  "is in no folder of the layers")
check_tree(NewProgram apps/network/main.cpp "#include <string>"
  "is in no folder of the layers")
check_tree(SqliteInStoreHeader src/store/Database.h "#include <sqlite3.h>"
  "sqlite3.h is for the sources of store/ alone")
check_tree(SqliteInTools apps/mcp/tools/Trend.cpp "#include \"sqlite3.h\""
  "sqlite3.h is for the sources of store/ alone")
check_tree(SqliteInTests tests/support/TestDatabase.cpp "#include <sqlite3.h>"
  "sqlite3.h is for the sources of store/ alone")
check_tree(SystemInSource src/platform/Files.cpp "#ifdef __APPLE__"
  "asks which system it is compiled for")
check_tree(SystemInProgram apps/sample/Sample.cpp "  # if defined(__linux__)"
  "asks which system it is compiled for")
check_tree(SystemInTests tests/support/ChildProcess.cpp "#ifdef __APPLE__" "")

if(failures)
  message(FATAL_ERROR "CheckLayers.cmake judges wrongly:\n${failures}")
endif()
message(STATUS "CheckLayers.cmake judges every case rightly")
