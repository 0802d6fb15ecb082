#include "mcp/server/Instructions.h"
#include "support/Golden.h"

#include <gtest/gtest.h>

namespace {

TEST(GoldenInstructions, AreWhatAModelReads) {
  EXPECT_TRUE(matchesGolden("initialize/instructions.en.txt", instructions.in(SummaryLang::en)));
  EXPECT_TRUE(matchesGolden("initialize/instructions.zh.txt", instructions.in(SummaryLang::zh)));
}

}  // namespace
