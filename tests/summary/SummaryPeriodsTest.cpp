// The periods that a summary looks at.

#include "summary/SummaryEngine.h"
#include "support/MemorySource.h"
#include "support/Moment.h"
#include "support/SummaryPrinters.h"
#include "support/ZoneGuard.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

struct WindowCase {
  std::string name;
  std::string zone;
  std::string now;
  int days;
  DayRange expected;
};

void PrintTo(const WindowCase& window, std::ostream* stream) { *stream << window.name; }

class LastDays : public testing::TestWithParam<WindowCase> {};

TEST_P(LastDays, EndTodayAndBeginThatManyCalendarDaysBefore) {
  const ZoneGuard zone(GetParam().zone);
  const MemorySource source;

  const SummaryEngine engine(source, moment(GetParam().now), SummaryLang::en, {});

  EXPECT_EQ(engine.lastDays(GetParam().days), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LastDays,
    testing::Values(
        WindowCase{"AMonth", "UTC", "2024-03-17 12:00:00 +0000", 30, {"2024-02-16", "2024-03-17"}},
        WindowCase{"NoDays", "UTC", "2024-03-17 12:00:00 +0000", 0, {"2024-03-17", "2024-03-17"}},
        WindowCase{"AcrossTheLeapDay",
                   "UTC",
                   "2024-03-01 00:00:00 +0000",
                   1,
                   {"2024-02-29", "2024-03-01"}},
        WindowCase{"AcrossTheYearsEnd",
                   "UTC",
                   "2024-01-01 00:00:00 +0000",
                   90,
                   {"2023-10-03", "2024-01-01"}},
        WindowCase{"LastSecondOfTheYear",
                   "UTC",
                   "2023-12-31 23:59:59 +0000",
                   1,
                   {"2023-12-30", "2023-12-31"}},
        WindowCase{"ShanghaiIsADayAhead",
                   "Asia/Shanghai",
                   "2024-03-16 16:00:00 +0000",
                   1,
                   {"2024-03-16", "2024-03-17"}},
        WindowCase{"ShanghaiBeforeItsMidnight",
                   "Asia/Shanghai",
                   "2024-03-16 15:59:59 +0000",
                   1,
                   {"2024-03-15", "2024-03-16"}},
        WindowCase{"ShanghaiNewYear",
                   "Asia/Shanghai",
                   "2023-12-31 16:00:00 +0000",
                   1,
                   {"2023-12-31", "2024-01-01"}},
        WindowCase{"NewYorkIsADayBehind",
                   "America/New_York",
                   "2024-03-17 03:59:59 +0000",
                   1,
                   {"2024-03-15", "2024-03-16"}},
        WindowCase{"NewYorkDayOfTwentyThreeHours",
                   "America/New_York",
                   "2024-03-11 00:30:00 -0400",
                   1,
                   {"2024-03-10", "2024-03-11"}},
        WindowCase{"NewYorkDayOfTwentyFiveHours",
                   "America/New_York",
                   "2024-11-03 23:30:00 -0500",
                   1,
                   {"2024-11-02", "2024-11-03"}}),
    [](const auto& test) { return test.param.name; });

class LastYearWindow : public testing::TestWithParam<WindowCase> {};

TEST_P(LastYearWindow, EndsOneCalendarYearBeforeToday) {
  const ZoneGuard zone(GetParam().zone);
  const MemorySource source;

  const SummaryEngine engine(source, moment(GetParam().now), SummaryLang::en, {});

  EXPECT_EQ(engine.lastYearWindow(GetParam().days), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LastYearWindow,
    testing::Values(
        WindowCase{"AMonth", "UTC", "2024-03-17 12:00:00 +0000", 30, {"2023-02-15", "2023-03-17"}},
        WindowCase{
            "AQuarter", "UTC", "2024-03-17 12:00:00 +0000", 90, {"2022-12-17", "2023-03-17"}},
        WindowCase{"LeapDayHasNoAnniversary",
                   "UTC",
                   "2024-02-29 12:00:00 +0000",
                   30,
                   {"2023-01-29", "2023-02-28"}},
        WindowCase{"AfterALeapDayAYearAgo",
                   "UTC",
                   "2025-03-01 12:00:00 +0000",
                   1,
                   {"2024-02-29", "2024-03-01"}},
        WindowCase{"LastDayOfTheYear",
                   "America/New_York",
                   "2025-01-01 04:30:00 +0000",
                   30,
                   {"2023-12-01", "2023-12-31"}},
        WindowCase{"FirstDayOfTheYear",
                   "Asia/Shanghai",
                   "2023-12-31 16:30:00 +0000",
                   90,
                   {"2022-10-03", "2023-01-01"}},
        WindowCase{"DayOnWhichClocksChange",
                   "America/New_York",
                   "2024-03-10 23:30:00 -0400",
                   30,
                   {"2023-02-08", "2023-03-10"}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
