#include "platform/AppleFormat.h"
#include "platform/Stamp.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr int hour = 3600;

TEST(StampText, BeginsWithItsDay) {
  EXPECT_EQ(StampText(Stamp{.moment = 0, .offset = 8 * hour}).day(), "1970-01-01");
  EXPECT_EQ(StampText(Stamp{.moment = 0, .offset = -5 * hour}).day(), "1969-12-31");
}

TEST(StampText, HasTheOffsetInHoursAndMinutes) {
  const auto text = [](int offset) {
    return std::string(StampText(Stamp{.moment = 1709247272, .offset = offset}).text());
  };
  EXPECT_EQ(text(0), "2024-02-29 22:54:32 +0000");
  EXPECT_EQ(text(5 * hour + 45 * 60), "2024-03-01 04:39:32 +0545");
  EXPECT_EQ(text(-(3 * hour + 30 * 60)), "2024-02-29 19:24:32 -0330");
  EXPECT_EQ(text(-30 * 60), "2024-02-29 22:24:32 -0030");
}

TEST(StampText, IsReadBackAsTheSameStamp) {
  for (const std::int64_t moment : {-62135596800LL, -1LL, 0LL, 951825600LL, 253402300799LL}) {
    const Stamp stamp{.moment = moment, .offset = 0};
    EXPECT_EQ(AppleFormat::stampParser.stamp(StampText(stamp).text()), stamp);
  }
}

TEST(Stamp, KeepsItsOffsetLaterOn) {
  const Stamp stamp{.moment = 100, .offset = hour};
  EXPECT_EQ(stamp.after(60), (Stamp{.moment = 160, .offset = hour}));
}

}  // namespace
