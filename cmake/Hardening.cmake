# What makes a memory error in a program that reads private data harder to exploit, and a release
# the same bytes wherever it is built. Applies to every target defined after this file is included.

include(CheckCXXCompilerFlag)

# Position-independent programs. CMake's own switch compiles libraries for sharing (-fPIC) and
# programs not; here every library is part of a program, and with one flag for all of them the tests
# share one precompiled header.
add_compile_options(-fPIE)
add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)

# Out-of-range indexes into containers and views stop the program, in every build.
add_compile_definitions(_GLIBCXX_ASSERTIONS)

# Level 3 of _FORTIFY_SOURCE also checks lengths that are known only when the program runs.
set(larkspur_fortify 2)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12)
  set(larkspur_fortify 3)
endif()

# _FORTIFY_SOURCE needs an optimising build and gets in the way of the address sanitizer, hence the
# releases alone. A toolchain that defines it already, as some distributions' do, must not be told
# twice.
set(larkspur_release $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
add_compile_options(
  -fstack-protector-strong
  $<${larkspur_release}:-U_FORTIFY_SOURCE>
  $<${larkspur_release}:-D_FORTIFY_SOURCE=${larkspur_fortify}>
  $<${larkspur_release}:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>
  $<${larkspur_release}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)

# A stack that grows touches every page, so that it meets the guard below it and not what lies
# beyond. Jumps and returns carry the marks by which x86 processors, and those of Arm, know the
# places they may lead to. Both are the compiler's to offer, and its machine's.
foreach(defence IN ITEMS -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard)
  string(MAKE_C_IDENTIFIER "larkspur_has${defence}" offered)
  check_cxx_compiler_flag("-Werror ${defence}" ${offered})
  if(${offered})
    add_compile_options($<${larkspur_release}:${defence}>)
  endif()
endforeach()
unset(offered)
unset(larkspur_release)
unset(larkspur_fortify)

# Full RELRO is a matter of ELF; the macOS linker has no such switches.
if(NOT APPLE)
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
