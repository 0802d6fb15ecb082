# A phrase without one of its languages must not compile, nor a language without some of the words.
# Expects COMPILER, SOURCES (the folder of platform/ and summary/) and SCRATCH, a file to write.

function(expect_compiles wanted code)
  file(WRITE ${SCRATCH}
"#include \"platform/Phrase.h\"
#include \"summary/SummaryStrings.h\"
${code};
")
  execute_process(
    COMMAND ${COMPILER} -std=c++20 -fsyntax-only -I ${SOURCES} -x c++ ${SCRATCH}
    RESULT_VARIABLE status
    OUTPUT_QUIET
    ERROR_VARIABLE errors)
  if(wanted AND NOT status EQUAL 0)
    message(SEND_ERROR "should compile: ${code}\n${errors}")
  elseif(NOT wanted AND status EQUAL 0)
    message(SEND_ERROR "should not compile: ${code}")
  endif()
endfunction()

expect_compiles(TRUE "constexpr Phrase phrase{\"步行\", \"Walking\"}")
expect_compiles(FALSE "constexpr Phrase phrase{\"步行\", \"\"}")
expect_compiles(FALSE "constexpr Phrase phrase{\"\", \"Walking\"}")
expect_compiles(FALSE "constexpr Phrase phrase{\"步行\"}")
expect_compiles(FALSE "struct Row { int number; Phrase phrase; }; constexpr Row row{.number = 1}")

expect_compiles(TRUE "struct Unit { Words text; }; constexpr Unit unit{.text = \" kg\"}")
expect_compiles(TRUE "struct Unit { Words text; }; constexpr Unit unit{.text = Words::unwritten()}")
expect_compiles(FALSE "struct Unit { Words text; }; constexpr Unit unit{.text = \"\"}")
expect_compiles(FALSE "constexpr SummaryStrings strings{.cardOverview = \"Overview\"}")
