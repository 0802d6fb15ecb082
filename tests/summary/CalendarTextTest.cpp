#include "summary/CalendarText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

struct WeekdayCase {
  std::string name;
  int number;
  std::string zh;
  std::string en;
};

class WeekdayName : public testing::TestWithParam<WeekdayCase> {};

TEST_P(WeekdayName, IsShownInBothLanguages) {
  EXPECT_EQ(weekdayName(GetParam().number, SummaryLang::zh), GetParam().zh);
  EXPECT_EQ(weekdayName(GetParam().number, SummaryLang::en), GetParam().en);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, WeekdayName,
    testing::Values(
        WeekdayCase{"One", 1, "星期日", "Sunday"}, WeekdayCase{"Two", 2, "星期一", "Monday"},
        WeekdayCase{"Three", 3, "星期二", "Tuesday"}, WeekdayCase{"Four", 4, "星期三", "Wednesday"},
        WeekdayCase{"Five", 5, "星期四", "Thursday"}, WeekdayCase{"Six", 6, "星期五", "Friday"},
        WeekdayCase{"Seven", 7, "星期六", "Saturday"}, WeekdayCase{"Zero", 0, "星期日", "Sunday"},
        WeekdayCase{"Eight", 8, "星期六", "Saturday"}, WeekdayCase{"Nine", 9, "星期六", "Saturday"},
        WeekdayCase{"Smallest", std::numeric_limits<int>::min(), "星期日", "Sunday"},
        WeekdayCase{"Largest", std::numeric_limits<int>::max(), "星期六", "Saturday"}),
    [](const auto& test) { return test.param.name; });

struct MonthCase {
  std::string name;
  std::string text;
  std::string zh;
  std::string en;
};

class MonthName : public testing::TestWithParam<MonthCase> {};

TEST_P(MonthName, IsShownInBothLanguages) {
  EXPECT_EQ(monthName(GetParam().text, SummaryLang::zh), GetParam().zh);
  EXPECT_EQ(monthName(GetParam().text, SummaryLang::en), GetParam().en);
}

INSTANTIATE_TEST_SUITE_P(
    Months, MonthName,
    testing::Values(MonthCase{"January", "2024-01", "2024 年 1 月", "January 2024"},
                    MonthCase{"February", "2024-02", "2024 年 2 月", "February 2024"},
                    MonthCase{"March", "2024-03", "2024 年 3 月", "March 2024"},
                    MonthCase{"April", "2024-04", "2024 年 4 月", "April 2024"},
                    MonthCase{"May", "2024-05", "2024 年 5 月", "May 2024"},
                    MonthCase{"June", "2024-06", "2024 年 6 月", "June 2024"},
                    MonthCase{"July", "2024-07", "2024 年 7 月", "July 2024"},
                    MonthCase{"August", "2024-08", "2024 年 8 月", "August 2024"},
                    MonthCase{"September", "2024-09", "2024 年 9 月", "September 2024"},
                    MonthCase{"October", "2024-10", "2024 年 10 月", "October 2024"},
                    MonthCase{"November", "2024-11", "2024 年 11 月", "November 2024"},
                    MonthCase{"December", "2024-12", "2024 年 12 月", "December 2024"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OtherTexts, MonthName,
    testing::Values(MonthCase{"MonthZero", "2024-0", "2024 年 1 月", "January 2024"},
                    MonthCase{"MonthThirteen", "2024-13", "2024 年 12 月", "December 2024"},
                    MonthCase{
                        "MonthOfManyDigits", "2024-99999999999", "2024 年 12 月", "December 2024"},
                    MonthCase{"NoLeadingZero", "2024-3", "2024 年 3 月", "March 2024"},
                    MonthCase{"YearIsNotLookedAt", "spring-03", "spring 年 3 月", "March spring"},
                    MonthCase{"MarkInTheYearIsNotFilled", "{0}-03", "{0} 年 3 月", "March {0}"},
                    MonthCase{"NoDash", "202403", "202403", "202403"},
                    MonthCase{"Empty", "", "", ""}, MonthCase{"NoMonth", "2024-", "2024-", "2024-"},
                    MonthCase{"MonthInWords", "2024-March", "2024-March", "2024-March"},
                    MonthCase{"MonthWithATail", "2024-03x", "2024-03x", "2024-03x"},
                    MonthCase{"MonthWithABlank", "2024- 3", "2024- 3", "2024- 3"},
                    MonthCase{"WholeDay", "2024-03-01", "2024-03-01", "2024-03-01"},
                    MonthCase{"NegativeMonth", "2024--3", "2024--3", "2024--3"}),
    [](const auto& test) { return test.param.name; });

struct DurationCase {
  std::string name;
  std::int64_t hours;
  std::int64_t minutes;
  std::string zh;
  std::string en;
};

class HoursMinutes : public testing::TestWithParam<DurationCase> {};

TEST_P(HoursMinutes, AreShownInBothLanguages) {
  const auto& [name, hours, minutes, zh, en] = GetParam();
  EXPECT_EQ(hoursMinutes(hours, minutes, SummaryLang::zh), zh);
  EXPECT_EQ(hoursMinutes(hours, minutes, SummaryLang::en), en);
}

INSTANTIATE_TEST_SUITE_P(
    Durations, HoursMinutes,
    testing::Values(DurationCase{"Both", 7, 5, "7 小时 5 分", "7h 5m"},
                    DurationCase{"WholeHours", 7, 0, "7 小时 0 分", "7h 0m"},
                    DurationCase{"MinutesOnly", 0, 45, "45 分", "45m"},
                    DurationCase{"Nothing", 0, 0, "0 分", "0m"},
                    DurationCase{"HoursBelowZero", -1, 30, "30 分", "30m"},
                    DurationCase{"ManyHours", 1000, 59, "1000 小时 59 分", "1000h 59m"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
