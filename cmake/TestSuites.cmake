# Read by ctest before it runs anything: asks a test program for its suites and makes each one an
# entry, named "<folder>/<suite>". An entry a test would start the program thousands of times, which
# takes far longer than the tests themselves.

function(larkspur_add_suites folder program)
  if(NOT EXISTS ${program})
    add_test(${folder}/NotBuilt ${program})
    return()
  endif()
  execute_process(COMMAND ${program} --gtest_list_tests
    OUTPUT_VARIABLE listing
    RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${program} cannot list its tests: ${result}")
  endif()

  # Suites stand at the beginning of a line, their tests are indented.
  string(REGEX MATCHALL "\n[A-Za-z0-9_/]+\\." lines "\n${listing}")
  set(suites "")
  foreach(line IN LISTS lines)
    string(REGEX REPLACE "^\n(.*)\\.$" "\\1" suite "${line}")
    # The instantiations of one suite with parameters, "<instantiation>/<suite>", share an entry.
    string(REGEX REPLACE "^.*/([A-Za-z_][A-Za-z0-9_]*)$" "\\1" suite "${suite}")
    list(APPEND suites ${suite})
  endforeach()
  list(REMOVE_DUPLICATES suites)

  foreach(suite IN LISTS suites)
    add_test(${folder}/${suite} ${program} --gtest_brief=1 "--gtest_filter=${suite}.*:*/${suite}.*")
    # Many times what the slowest takes under a sanitizer on a busy machine, so that only what hangs
    # is ended.
    set_tests_properties(${folder}/${suite} PROPERTIES TIMEOUT 600)
  endforeach()
endfunction()
