#include "platform/AppleFormat.h"
#include "support/ZoneGuard.h"

#include <gtest/gtest.h>
#include <time.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace std::string_literals;
using AppleFormat::dayParser;
using AppleFormat::dayText;
using AppleFormat::stampParser;

CivilDay dayOf(int year, unsigned month, unsigned day) {
  return {std::chrono::year{year}, std::chrono::month{month}, std::chrono::day{day}};
}

struct DayCase {
  std::string name;
  std::string text;
  std::optional<CivilDay> day;
};

class DayParse : public testing::TestWithParam<DayCase> {};

TEST_P(DayParse, ReadsDaysAndNothingElse) {
  EXPECT_EQ(dayParser.parse(GetParam().text), GetParam().day);
}

INSTANTIATE_TEST_SUITE_P(
    Days, DayParse,
    testing::Values(DayCase{"Plain", "2024-03-01", dayOf(2024, 3, 1)},
                    DayCase{"FirstOfAll", "0001-01-01", dayOf(1, 1, 1)},
                    DayCase{"LastOfAll", "9999-12-31", dayOf(9999, 12, 31)},
                    DayCase{"LeapDay", "2024-02-29", dayOf(2024, 2, 29)},
                    DayCase{"LeapDayOfACenturyByFourHundred", "2000-02-29", dayOf(2000, 2, 29)},
                    DayCase{"NoLeadingZeros", "2024-3-1", dayOf(2024, 3, 1)},
                    DayCase{"ShortYear", "7-03-01", dayOf(7, 3, 1)},
                    DayCase{"EndOfAprilIsThe30th", "2024-04-30", dayOf(2024, 4, 30)}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Refused, DayParse,
    testing::Values(
        DayCase{"Empty", "", {}}, DayCase{"YearZero", "0000-01-01", {}},
        DayCase{"YearOfFiveDigits", "12024-03-01", {}}, DayCase{"NegativeYear", "-2024-03-01", {}},
        DayCase{"LeapDayOfACommonYear", "2023-02-29", {}},
        DayCase{"LeapDayOfACommonCentury", "1900-02-29", {}},
        DayCase{"ThirtiethOfFebruary", "2024-02-30", {}},
        DayCase{"ThirtyFirstOfApril", "2024-04-31", {}}, DayCase{"MonthZero", "2024-00-01", {}},
        DayCase{"MonthThirteen", "2024-13-01", {}}, DayCase{"DayZero", "2024-03-00", {}},
        DayCase{"DayThirtyTwo", "2024-03-32", {}}, DayCase{"MonthOfThreeDigits", "2024-003-01", {}},
        DayCase{"DayOfThreeDigits", "2024-03-001", {}}, DayCase{"LeadingBlank", " 2024-03-01", {}},
        DayCase{"TrailingBlank", "2024-03-01 ", {}},
        DayCase{"TrailingLineFeed", "2024-03-01\n", {}}, DayCase{"TrailingText", "2024-03-01x", {}},
        DayCase{"TrailingZeroByte", "2024-03-01\0"s, {}},
        DayCase{"WholeStamp", "2024-03-01 06:54:32 +0800", {}},
        DayCase{"Slashes", "2024/03/01", {}}, DayCase{"NoDashes", "20240301", {}},
        DayCase{"NoYear", "-03-01", {}}, DayCase{"NoMonth", "2024--01", {}},
        DayCase{"NoDay", "2024-03-", {}}, DayCase{"OnlyAMonth", "2024-03", {}},
        DayCase{"SignInTheMonth", "2024-+3-01", {}}, DayCase{"BlankInTheMonth", "2024- 3-01", {}},
        DayCase{"FullWidthDigits", "2024-0３-01", {}}, DayCase{"Words", "today", {}}),
    [](const auto& test) { return test.param.name; });

TEST(DayText, HasFourDigitsOfYearAndTwoOfMonthAndDay) {
  EXPECT_EQ(dayText(dayOf(2024, 2, 3)), "2024-02-03");
  EXPECT_EQ(dayText(dayOf(7, 12, 31)), "0007-12-31");
  EXPECT_EQ(dayText(dayOf(9999, 10, 10)), "9999-10-10");
}

TEST(DayText, IsReadBackForEveryDayOfFourCenturies) {
  const std::chrono::sys_days last{dayOf(2400, 1, 1)};
  for (std::chrono::sys_days day{dayOf(2000, 1, 1)}; day < last; day += std::chrono::days{1}) {
    ASSERT_EQ(dayParser.parse(dayText(CivilDay{day})), CivilDay{day});
  }
}

struct StampCase {
  std::string name;
  std::string text;
  std::optional<std::int64_t> moment;
};

class StampParse : public testing::TestWithParam<StampCase> {};

TEST_P(StampParse, ReadsStampsAndNothingElse) {
  EXPECT_EQ(stampParser.parse(GetParam().text), GetParam().moment);
}

TEST(StampOf, TellsTheZonesOffset) {
  const Stamp evening{.moment = 1709269199, .offset = -5 * 3600};
  EXPECT_EQ(stampParser.stamp("2024-02-29 23:59:59 -0500"), evening);
  EXPECT_EQ(stampParser.stamp("2024-2-29 23:59:59 -05:00"), evening);
  EXPECT_EQ(stampParser.stamp("1970-01-01 00:00:00 Z"), (Stamp{.moment = 0, .offset = 0}));
  EXPECT_EQ(stampParser.stamp("2024-02-29"), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Stamps, StampParse,
    testing::Values(StampCase{"EastOfUTC", "2024-03-01 06:54:32 +0800", 1709247272},
                    StampCase{"WestOfUTC", "2024-02-29 23:59:59 -0500", 1709269199},
                    StampCase{"Epoch", "1970-01-01 00:00:00 +0000", 0},
                    StampCase{"BeforeTheEpoch", "1969-12-31 23:59:59 +0000", -1},
                    StampCase{"FirstOfAll", "0001-01-01 00:00:00 +0000", -62135596800},
                    StampCase{"LastOfAll", "9999-12-31 23:59:59 +0000", 253402300799},
                    StampCase{"LeapDay", "2000-02-29 12:00:00 +0000", 951825600},
                    StampCase{"YearWithALeadingZero", "0999-01-02 03:04:05 +0000", -30641662555},
                    StampCase{"ShortYear", "999-01-02 03:04:05 +0000", -30641662555},
                    StampCase{"NoLeadingZeros", "2024-1-2 3:4:5 +0000", 1704164645},
                    StampCase{"ZoneZ", "2024-03-01 06:54:32 Z", 1709276072},
                    StampCase{"ZoneGMT", "2024-03-01 06:54:32 GMT", 1709276072},
                    StampCase{"ZoneWithAColon", "2024-03-01 06:54:32 +08:00", 1709247272},
                    StampCase{"WesternZoneWithAColon", "2024-02-29 23:59:59 -05:00", 1709269199},
                    StampCase{"HalfHourZone", "2024-03-01 12:24:32 +0530", 1709276072},
                    StampCase{"NegativeZero", "1970-01-01 00:00:00 -0000", 0},
                    StampCase{"WidestEasternZone", "1970-01-01 23:59:00 +2359", 0},
                    StampCase{"WidestWesternZone", "1970-01-01 00:00:00 -2359", 86340},
                    StampCase{"WidestZoneWithAColon", "1970-01-01 00:00:00 -23:59", 86340}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Refused, StampParse,
    testing::Values(StampCase{"Empty", "", {}}, StampCase{"DayOnly", "2024-03-01", {}},
                    StampCase{"NoZone", "2024-03-01 06:54:32", {}},
                    StampCase{"BlankInsteadOfAZone", "2024-03-01 06:54:32 ", {}},
                    StampCase{"NoSeconds", "2024-03-01 06:54 +0800", {}},
                    StampCase{"HourTwentyFour", "2024-03-01 24:00:00 +0800", {}},
                    StampCase{"MinuteSixty", "2024-03-01 06:60:00 +0800", {}},
                    StampCase{"LeapSecond", "2016-12-31 23:59:60 +0000", {}},
                    StampCase{"HourOfThreeDigits", "2024-03-01 006:54:32 +0800", {}},
                    StampCase{"NoSuchDay", "2023-02-29 06:54:32 +0800", {}},
                    StampCase{"MonthThirteen", "2024-13-01 06:54:32 +0800", {}},
                    StampCase{"YearZero", "0000-01-01 00:00:00 +0000", {}},
                    StampCase{"ZoneOfTwentyFourHours", "2024-03-01 06:54:32 +2400", {}},
                    StampCase{"ZoneOfSixtyMinutes", "2024-03-01 06:54:32 +0860", {}},
                    StampCase{"ZoneOfTwoDigits", "2024-03-01 06:54:32 +08", {}},
                    StampCase{"ZoneOfThreeDigits", "2024-03-01 06:54:32 +800", {}},
                    StampCase{"ZoneOfFiveDigits", "2024-03-01 06:54:32 +08000", {}},
                    StampCase{"ZoneWithoutASign", "2024-03-01 06:54:32 0800", {}},
                    StampCase{"ZoneByAnotherName", "2024-03-01 06:54:32 PST", {}},
                    StampCase{"LowerCaseZ", "2024-03-01 06:54:32 z", {}},
                    StampCase{"GMTWithAnOffset", "2024-03-01 06:54:32 GMT+8", {}},
                    StampCase{"LeadingBlank", " 2024-03-01 06:54:32 +0800", {}},
                    StampCase{"TrailingBlank", "2024-03-01 06:54:32 +0800 ", {}},
                    StampCase{"TrailingText", "2024-03-01 06:54:32 +0800x", {}},
                    StampCase{"TrailingZeroByte", "2024-03-01 06:54:32 +0800\0"s, {}},
                    StampCase{"TwoBlanks", "2024-03-01  06:54:32 +0800", {}},
                    StampCase{"LetterT", "2024-03-01T06:54:32+08:00", {}},
                    StampCase{"Fractions", "2024-03-01 06:54:32.5 +0800", {}},
                    StampCase{"DashesInTheTime", "2024-03-01 06-54-32 +0800", {}},
                    StampCase{"LetterInTheYear", "2O24-03-01 06:54:32 +0800", {}},
                    StampCase{"LetterInTheZone", "2024-03-01 06:54:32 +080O", {}},
                    StampCase{"ByteAboveASCII", "2024-03-0\xB1 06:54:32 +0800", {}}),
    [](const auto& test) { return test.param.name; });

/// Everything a stamp is made of; also what is no day and no time.
struct Parts {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int zoneHours;
  int zoneMinutes;
};

/// `number` in at least `width` digits.
std::string digits(int number, std::size_t width) {
  std::string text = std::to_string(number);
  return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

/// The stamp with days and times of `width` digits at least and `colon` inside the zone.
std::string written(const Parts& parts, char sign, std::size_t width, std::string_view colon) {
  return digits(parts.year, 2 * width) + "-" + digits(parts.month, width) + "-" +
         digits(parts.day, width) + " " + digits(parts.hour, width) + ":" +
         digits(parts.minute, width) + ":" + digits(parts.second, width) + " " + sign +
         digits(parts.zoneHours, 2).append(colon) + digits(parts.zoneMinutes, 2);
}

/// What the C library makes of the same parts, which it takes for UTC.
std::int64_t reference(const Parts& parts, char sign) {
  std::tm time{};
  time.tm_year = parts.year - 1900;
  time.tm_mon = parts.month - 1;
  time.tm_mday = parts.day;
  time.tm_hour = parts.hour;
  time.tm_min = parts.minute;
  time.tm_sec = parts.second;
  const int offset = (parts.zoneHours * 60 + parts.zoneMinutes) * 60;
  return timegm(&time) + (sign == '-' ? offset : -offset);
}

std::vector<Parts> generatedParts() {
  std::vector<Parts> table;
  for (const int year : {0, 1, 99, 1582, 1900, 1970, 2000, 2023, 2024, 9999}) {
    for (int month = 0; month <= 13; ++month) {
      for (const int day : {0, 1, 9, 28, 29, 30, 31, 32}) {
        for (const int hour : {0, 9, 12, 23, 24}) {
          const int mixed = (year + month * 7 + day * 13 + hour * 3) % 61;
          table.push_back({year, month, day, hour, mixed, (mixed * 5) % 61, hour, mixed});
        }
      }
    }
  }
  return table;
}

TEST(StampParse, MakesTheSameOfEveryWayToWriteAMoment) {
  int valid = 0;
  for (const Parts& parts : generatedParts()) {
    for (const char sign : {'+', '-'}) {
      const std::string usual = written(parts, sign, 2, "");

      const std::optional<std::int64_t> moment = stampParser.parse(usual);
      ASSERT_EQ(stampParser.parse(written(parts, sign, 1, "")), moment) << usual;
      ASSERT_EQ(stampParser.parse(written(parts, sign, 2, ":")), moment) << usual;
      if (!moment) continue;
      ASSERT_EQ(*moment, reference(parts, sign)) << usual;
      ++valid;
    }
  }
  EXPECT_GT(valid, 3000);
}

struct LocalCase {
  std::string name;
  std::string zone;
  double moment;
  std::string text;
};

class LocalMoment : public testing::TestWithParam<LocalCase> {};

TEST_P(LocalMoment, IsWhatAClockOnTheWallShows) {
  const ZoneGuard zone(GetParam().zone);

  EXPECT_EQ(AppleFormat::secondText(GetParam().moment), GetParam().text);
  EXPECT_EQ(AppleFormat::minuteText(GetParam().moment), GetParam().text.substr(0, 16));
}

INSTANTIATE_TEST_SUITE_P(
    Zones, LocalMoment,
    testing::Values(
        LocalCase{"UTC", "UTC", 1709247272, "2024-02-29 22:54:32"},
        LocalCase{"Shanghai", "Asia/Shanghai", 1709247272, "2024-03-01 06:54:32"},
        LocalCase{"NewYork", "America/New_York", 1709247272, "2024-02-29 17:54:32"},
        LocalCase{"LastSecondOfWinterTime", "America/New_York", 1710053999, "2024-03-10 01:59:59"},
        LocalCase{"FirstSecondOfSummerTime", "America/New_York", 1710054000, "2024-03-10 03:00:00"},
        LocalCase{"LastSecondOfSummerTime", "America/New_York", 1730613599, "2024-11-03 01:59:59"},
        LocalCase{"TheSameHourAgain", "America/New_York", 1730613600, "2024-11-03 01:00:00"},
        LocalCase{"ShanghaiOnceHadSummerTime", "Asia/Shanghai", 651952800, "1990-08-30 03:00:00"},
        LocalCase{"FractionsAreCutOff", "UTC", 1709247272.999, "2024-02-29 22:54:32"},
        LocalCase{"FractionsBeforeTheEpochGoDown", "UTC", -0.25, "1969-12-31 23:59:59"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    FarAway, LocalMoment,
    testing::Values(
        LocalCase{"LatestOfAll", "UTC", 253402214399.0, "9999-12-30 23:59:59"},
        LocalCase{"LaterCountsAsTheLatest", "UTC", 253402214400.0, "9999-12-30 23:59:59"},
        LocalCase{"MuchLater", "UTC", 1e300, "9999-12-30 23:59:59"},
        LocalCase{
            "Infinite", "UTC", std::numeric_limits<double>::infinity(), "9999-12-30 23:59:59"},
        LocalCase{"LatestInTheFarEast", "Pacific/Kiritimati", 1e18, "9999-12-31 13:59:59"},
        LocalCase{"EarliestOfAll", "UTC", -62135510400.0, "0001-01-02 00:00:00"},
        LocalCase{"EarlierCountsAsTheEarliest", "UTC", -62135510401.0, "0001-01-02 00:00:00"},
        LocalCase{"NegativeInfinite",
                  "UTC",
                  -std::numeric_limits<double>::infinity(),
                  "0001-01-02 00:00:00"},
        LocalCase{"EarliestInTheFarWest", "FAR12", -1e18, "0001-01-01 12:00:00"}),
    [](const auto& test) { return test.param.name; });

TEST(LocalTime, GivesDayAndClock) {
  const ZoneGuard zone("Asia/Shanghai");
  EXPECT_EQ(AppleFormat::localTime(1709247272), (LocalTime{dayOf(2024, 3, 1), 6, 54, 32}));
}

struct BetweenCase {
  std::string name;
  std::string first;
  std::string last;
  int days;
};

class DaysBetween : public testing::TestWithParam<BetweenCase> {};

TEST_P(DaysBetween, CountsCalendarDaysWhereClocksChange) {
  const ZoneGuard zone("America/New_York");
  EXPECT_EQ(AppleFormat::daysBetween(GetParam().first, GetParam().last), GetParam().days);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DaysBetween,
    testing::Values(BetweenCase{"SameDay", "2024-03-10", "2024-03-10", 0},
                    BetweenCase{"AcrossTheShortDay", "2024-03-10", "2024-03-11", 1},
                    BetweenCase{"AroundTheShortDay", "2024-03-09", "2024-03-11", 2},
                    BetweenCase{"AcrossTheLongDay", "2024-11-03", "2024-11-04", 1},
                    BetweenCase{"Backwards", "2024-03-11", "2024-03-09", -2},
                    BetweenCase{"AcrossALeapDay", "2024-02-28", "2024-03-01", 2},
                    BetweenCase{"AcrossNoLeapDay", "2023-02-28", "2023-03-01", 1},
                    BetweenCase{"AllDaysThereAre", "0001-01-01", "9999-12-31", 3652058},
                    BetweenCase{"FirstIsNoDay", "yesterday", "2024-03-01", 0},
                    BetweenCase{"LastIsNoDay", "2024-03-01", "", 0},
                    BetweenCase{"NeitherIsADay", "", "2024-02-30", 0}),
    [](const auto& test) { return test.param.name; });

TEST(DaysBefore, CrossesMonthsAndYears) {
  EXPECT_EQ(AppleFormat::daysBefore(dayOf(2024, 3, 1), 1), dayOf(2024, 2, 29));
  EXPECT_EQ(AppleFormat::daysBefore(dayOf(2024, 1, 1), 1), dayOf(2023, 12, 31));
  EXPECT_EQ(AppleFormat::daysBefore(dayOf(2024, 3, 1), 366), dayOf(2023, 3, 1));
  EXPECT_EQ(AppleFormat::daysBefore(dayOf(2024, 3, 1), 0), dayOf(2024, 3, 1));
}

TEST(DaysAfter, CrossesMonthsAndYears) {
  EXPECT_EQ(AppleFormat::daysAfter(dayOf(2024, 2, 28), 2), dayOf(2024, 3, 1));
  EXPECT_EQ(AppleFormat::daysAfter(dayOf(2023, 12, 31), 1), dayOf(2024, 1, 1));
  EXPECT_EQ(AppleFormat::daysAfter(dayOf(2023, 3, 1), 366), dayOf(2024, 3, 1));
  EXPECT_EQ(AppleFormat::daysAfter(dayOf(2024, 3, 1), 0), dayOf(2024, 3, 1));
}

TEST(YearBefore, IsTheSameDayOneYearEarlier) {
  EXPECT_EQ(AppleFormat::yearBefore(dayOf(2024, 3, 1)), dayOf(2023, 3, 1));
  EXPECT_EQ(AppleFormat::yearBefore(dayOf(2025, 2, 28)), dayOf(2024, 2, 28));
  EXPECT_EQ(AppleFormat::yearBefore(dayOf(2024, 12, 31)), dayOf(2023, 12, 31));
}

TEST(YearBefore, OfALeapDayIsTheEndOfFebruary) {
  EXPECT_EQ(AppleFormat::yearBefore(dayOf(2024, 2, 29)), dayOf(2023, 2, 28));
}

}  // namespace
