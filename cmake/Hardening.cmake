# What makes a memory error in a program that reads private data harder to exploit, and a release
# the same bytes wherever it is built. Applies to every target defined after this file is included.

# Position-independent programs. CMake's own switch compiles libraries for sharing (-fPIC) and
# programs not; here every library is part of a program, and with one flag for all of them the tests
# share one precompiled header.
add_compile_options(-fPIE)
add_link_options($<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)

# Out-of-range indexes into containers and views stop the program, in every build.
add_compile_definitions(_GLIBCXX_ASSERTIONS)

# _FORTIFY_SOURCE needs an optimising build and gets in the way of the address sanitizer, hence the
# releases alone. A toolchain that defines it already, as some distributions' do, must not be told
# twice.
set(larkspur_release $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
add_compile_options(
  -fstack-protector-strong
  $<${larkspur_release}:-U_FORTIFY_SOURCE>
  $<${larkspur_release}:-D_FORTIFY_SOURCE=2>
  $<${larkspur_release}:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>
  $<${larkspur_release}:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>)
unset(larkspur_release)

# Full RELRO is a matter of ELF; the macOS linker has no such switches.
if(NOT APPLE)
  add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
