#include "sample/life/Calendar.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

CivilDay dayNamed(const std::string& text) { return *AppleFormat::dayParser.parse(text); }

struct MidnightCase {
  std::string name;
  Zone zone;
  std::string day;
  std::string expected;
};

void PrintTo(const MidnightCase& value, std::ostream* out) { *out << value.name; }

class Midnight : public testing::TestWithParam<MidnightCase> {};

TEST_P(Midnight, IsTheStartOfTheDayInTheZone) {
  const Stamp start = midnight(GetParam().zone, dayNamed(GetParam().day));

  EXPECT_EQ(StampText(start).text(), GetParam().expected);
  EXPECT_EQ(AppleFormat::stampParser.parse(GetParam().expected), start.moment);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Midnight,
    testing::Values(
        MidnightCase{"Shanghai", Zone::shanghai, "2024-07-01", "2024-07-01 00:00:00 +0800"},
        MidnightCase{"NewYorkInWinter", Zone::newYork, "2024-01-15", "2024-01-15 00:00:00 -0500"},
        MidnightCase{"NewYorkInSummer", Zone::newYork, "2024-07-01", "2024-07-01 00:00:00 -0400"},
        MidnightCase{
            "BeforeSpringForward", Zone::newYork, "2024-03-10", "2024-03-10 00:00:00 -0500"},
        MidnightCase{
            "AfterSpringForward", Zone::newYork, "2024-03-11", "2024-03-11 00:00:00 -0400"},
        MidnightCase{"BeforeFallBack", Zone::newYork, "2024-11-03", "2024-11-03 00:00:00 -0400"},
        MidnightCase{"AfterFallBack", Zone::newYork, "2024-11-04", "2024-11-04 00:00:00 -0500"},
        MidnightCase{"BeforeTheEpoch", Zone::newYork, "1969-02-28", "1969-02-28 00:00:00 -0500"}),
    [](const auto& test) { return test.param.name; });

TEST(StampIn, ChangesTheOffsetAtTheSecondOfTheChange) {
  const std::int64_t spring = *AppleFormat::stampParser.parse("2024-03-10 07:00:00 +0000");
  const std::int64_t autumn = *AppleFormat::stampParser.parse("2024-11-03 06:00:00 +0000");

  EXPECT_EQ(StampText(stampIn(Zone::newYork, spring - 1)).text(), "2024-03-10 01:59:59 -0500");
  EXPECT_EQ(StampText(stampIn(Zone::newYork, spring)).text(), "2024-03-10 03:00:00 -0400");
  EXPECT_EQ(StampText(stampIn(Zone::newYork, autumn - 1)).text(), "2024-11-03 01:59:59 -0400");
  EXPECT_EQ(StampText(stampIn(Zone::newYork, autumn)).text(), "2024-11-03 01:00:00 -0500");
}

TEST(ZoneName, IsWhatTheWorldCallsIt) {
  EXPECT_EQ(nameOf(Zone::shanghai), "Asia/Shanghai");
  EXPECT_EQ(nameOf(Zone::newYork), "America/New_York");
}

}  // namespace
