#include "platform/UTF8.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string_view>

namespace {

using UTF8::Form;

TEST(UTF8Run, IsACharacterWithNothingOfWhatFollows) {
  EXPECT_EQ(UTF8::runAt("a"), (UTF8::Run{1, Form::whole}));
  EXPECT_EQ(UTF8::runAt("é!"), (UTF8::Run{2, Form::whole}));
  EXPECT_EQ(UTF8::runAt("步!"), (UTF8::Run{3, Form::whole}));
  EXPECT_EQ(UTF8::runAt("\xF0\x9F\x8F\x83!"), (UTF8::Run{4, Form::whole}));
}

TEST(UTF8Run, IsIllFormedAsFarAsItCouldHaveBegunACharacter) {
  EXPECT_EQ(UTF8::runAt("\x80"), (UTF8::Run{1, Form::illFormed}));              // continues nothing
  EXPECT_EQ(UTF8::runAt("\xC0\x80"), (UTF8::Run{1, Form::illFormed}));          // overlong
  EXPECT_EQ(UTF8::runAt("\xE0\x9F\xBF"), (UTF8::Run{1, Form::illFormed}));      // overlong
  EXPECT_EQ(UTF8::runAt("\xED\xA0\x80"), (UTF8::Run{1, Form::illFormed}));      // a surrogate
  EXPECT_EQ(UTF8::runAt("\xF4\x90\x80\x80"), (UTF8::Run{1, Form::illFormed}));  // above U+10FFFF
  EXPECT_EQ(UTF8::runAt("\xE6\xAD!"), (UTF8::Run{2, Form::illFormed}));
}

TEST(UTF8Run, IsCutWhereOnlyItsEndIsMissing) {
  const std::string_view runner = "\xF0\x9F\x8F\x83";
  for (const std::size_t length : {1U, 2U, 3U}) {
    EXPECT_EQ(UTF8::runAt(runner.substr(0, length)), (UTF8::Run{length, Form::cut}));
  }
}

}  // namespace
