# A library that programs share with the system they run on, or carry inside them: a program whose
# target has the property LARKSPUR_CARRIES_LIBRARIES runs where the library is not installed. Both
# kinds are linked from the same compiled sources.
#
#   larkspur_carried_library(<imported target> SHARED <file> STATIC <file> INCLUDE <folder>)
#
# Without a static library the shared one serves both.

function(larkspur_carried_library target)
  cmake_parse_arguments(PARSE_ARGV 1 library "" "SHARED;STATIC;INCLUDE" "")
  if(NOT library_STATIC)
    set(library_STATIC ${library_SHARED})
  endif()
  set(carried $<BOOL:$<TARGET_PROPERTY:LARKSPUR_CARRIES_LIBRARIES>>)
  add_library(${target} INTERFACE IMPORTED)
  set_target_properties(${target} PROPERTIES
    INTERFACE_LINK_LIBRARIES "$<IF:${carried},${library_STATIC},${library_SHARED}>"
    INTERFACE_INCLUDE_DIRECTORIES "${library_INCLUDE}")
endfunction()
