# The warnings that our own code is held to. Targets link larkspur_warnings PRIVATE, so neither
# third-party headers nor a project that embeds ours is judged by them.

add_library(larkspur_warnings INTERFACE)

target_compile_options(larkspur_warnings INTERFACE
  -Wall
  -Wextra
  -Wpedantic
  # A constructor's argument may carry the name of the field it fills.
  $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
  # Tests that are compiled together see each other's names of the whole file.
  $<$<AND:$<CXX_COMPILER_ID:Clang,AppleClang>,$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>>:-Wshadow>
  -Wconversion
  -Wsign-conversion
  -Wdouble-promotion
  -Wold-style-cast
  -Wcast-align
  -Wcast-qual
  -Wformat=2
  -Wnon-virtual-dtor
  -Woverloaded-virtual
  -Wimplicit-fallthrough
  -Wundef
  -Wmissing-declarations
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-branches>
  $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
  -Wextra-semi
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wunreachable-code>
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wloop-analysis>
  $<$<BOOL:${LARKSPUR_WERROR}>:-Werror>)

# g++ 12 takes the copying inside an inlined "text" + std::string for one that overlaps itself, and
# warns of it in optimised builds. Other versions and the debug build keep the warning.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION MATCHES "^12\\.")
  target_compile_options(larkspur_warnings INTERFACE $<$<NOT:$<CONFIG:Debug>>:-Wno-restrict>)
endif()
