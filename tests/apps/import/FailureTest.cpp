#include "import/Failure.h"
#include "platform/Phrase.h"

#include <gtest/gtest.h>

namespace {

constexpr Phrase broken{"{1} 行的 {0} 坏了", "{0} is broken in line {1}"};

TEST(Failure, TellsItsReasonInBothLanguages) {
  const Failure error(broken, {"export.xml", "7"});

  EXPECT_EQ(error.text(SummaryLang::en), "export.xml is broken in line 7");
  EXPECT_EQ(error.text(SummaryLang::zh), "7 行的 export.xml 坏了");
  EXPECT_STREQ(error.what(), "export.xml is broken in line 7");
}

}  // namespace
