#include "platform/ReceiverError.h"

#include <gtest/gtest.h>

namespace {

TEST(ReceiverError, SaysItsMessageAndNothingElse) {
  EXPECT_STREQ(ReceiverError("库文件不存在:/data/kim.sqlite").what(),
               "库文件不存在:/data/kim.sqlite");
}

}  // namespace
