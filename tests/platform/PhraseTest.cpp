#include "platform/Phrase.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

static_assert(!std::is_default_constructible_v<Phrase>, "a record cannot leave its phrase out");

TEST(Phrase, IsReadByItsLanguage) {
  constexpr Phrase phrase{"步行", "Walking"};
  EXPECT_EQ(phrase.in(SummaryLang::zh), "步行");
  EXPECT_EQ(phrase.in(SummaryLang::en), "Walking");
}

}  // namespace
