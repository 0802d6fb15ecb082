// The nights that sleep segments make up.

#include "summary/SummaryEngine.h"
#include "summary/SummaryOfAnn.h"
#include "support/MemorySource.h"
#include "support/Moment.h"
#include "support/SummaryPrinters.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace {

using Operation = MemorySource::Operation;
using testing::ElementsAre;
using testing::IsEmpty;

SleepSegment asleep(const std::string& start, const std::string& end) {
  return {start, end, "HKCategoryValueSleepAnalysisAsleepCore"};
}

std::vector<Night> nightsOf(const std::vector<SleepSegment>& segments,
                            double now = moment("2024-03-17 12:00:00 +0000")) {
  MemorySource source;
  source.sleep = segments;
  return SummaryEngine(source, now, SummaryLang::en, {}).nights(90);
}

TEST(Nights, ReachFromTheFirstSleepToTheLastWaking) {
  EXPECT_THAT(nightsOf({asleep("2024-03-16 02:00:00 +0000", "2024-03-16 06:45:00 +0000"),
                        asleep("2024-03-15 23:10:00 +0000", "2024-03-16 01:40:00 +0000"),
                        asleep("2024-03-16 00:00:00 +0000", "2024-03-16 01:00:00 +0000")}),
              ElementsAre(Night{150 + 285 + 60, 310, 405}));
}

TEST(Nights, ComeInTheOrderOfTheirDays) {
  EXPECT_THAT(nightsOf({asleep("2024-03-16 23:00:00 +0000", "2024-03-17 06:00:00 +0000"),
                        asleep("2024-03-11 22:00:00 +0000", "2024-03-12 04:00:00 +0000"),
                        asleep("2024-03-14 01:00:00 +0000", "2024-03-14 09:00:00 +0000")}),
              ElementsAre(Night{360, 240, 240}, Night{480, 420, 540}, Night{420, 300, 360}));
}

TEST(Nights, AreTwoHoursAtLeast) {
  EXPECT_THAT(nightsOf({asleep("2024-03-15 23:00:00 +0000", "2024-03-16 00:59:00 +0000")}),
              IsEmpty());
  EXPECT_THAT(nightsOf({asleep("2024-03-15 23:00:00 +0000", "2024-03-16 01:00:00 +0000")}),
              ElementsAre(Night{120, 300, 60}));
}

TEST(Nights, AreMadeOfSleepAlone) {
  EXPECT_THAT(nightsOf({{"2024-03-15 22:00:00 +0000",
                         "2024-03-16 08:00:00 +0000",
                         "HKCategoryValueSleepAnalysisInBed"},
                        {"2024-03-16 03:00:00 +0000",
                         "2024-03-16 04:00:00 +0000",
                         "HKCategoryValueSleepAnalysisAwake"},
                        {"2024-03-15 20:00:00 +0000", "2024-03-16 09:00:00 +0000", "asleep"},
                        {"2024-03-15 20:00:00 +0000", "2024-03-16 09:00:00 +0000", ""},
                        asleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:00:00 +0000")}),
              ElementsAre(Night{480, 300, 420}));
}

TEST(Nights, LeaveOutSegmentsWithoutALengthOrAReadableStamp) {
  EXPECT_THAT(nightsOf({asleep("2024-03-15 23:00:00 +0000", "2024-03-15 23:00:00 +0000"),
                        asleep("2024-03-15 23:00:00 +0000", "2024-03-15 20:00:00 +0000"),
                        asleep("2024-03-15 23:00:00 +0000", ""),
                        asleep("2024-03-15", "2024-03-16 07:00:00 +0000"),
                        asleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:00:00 CET")}),
              IsEmpty());
}

TEST(Nights, AreThoseOfTheLastDaysOnly) {
  EXPECT_THAT(nightsOf({asleep("2023-12-17 23:00:00 +0000", "2023-12-18 07:00:00 +0000"),
                        asleep("2023-12-18 23:00:00 +0000", "2023-12-19 05:00:00 +0000"),
                        asleep("2024-03-18 01:00:00 +0000", "2024-03-18 07:00:00 +0000")}),
              ElementsAre(Night{360, 300, 300}));
}

TEST(Nights, AreNoneWhenTheSleepCannotBeRead) {
  MemorySource source;
  source.sleep = {asleep("2024-03-15 23:00:00 +0000", "2024-03-16 07:00:00 +0000")};
  source.failing = {Operation::sleepSegments};

  EXPECT_THAT(SummaryEngine(source, noon, SummaryLang::en, {}).nights(90), IsEmpty());
}

struct NightCase {
  std::string name;
  std::string zone;
  std::string start;
  std::string end;
  Night expected;
};

void PrintTo(const NightCase& night, std::ostream* stream) { *stream << night.name; }

class NightClock : public testing::TestWithParam<NightCase> {};

TEST_P(NightClock, ShowsTheMachinesOwnTime) {
  const ZoneGuard zone(GetParam().zone);
  const double nextNoon = moment(GetParam().end) + 43200;

  const std::vector<Night> nights = nightsOf({asleep(GetParam().start, GetParam().end)}, nextNoon);

  EXPECT_THAT(nights, ElementsAre(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(Cases, NightClock,
                         testing::Values(NightCase{"FromSixInTheEvening",
                                                   "UTC",
                                                   "2024-03-15 18:00:00 +0000",
                                                   "2024-03-16 00:00:00 +0000",
                                                   {360, 0, 0}},
                                         NightCase{"FromAMinuteBeforeSix",
                                                   "UTC",
                                                   "2024-03-15 17:59:00 +0000",
                                                   "2024-03-15 23:59:00 +0000",
                                                   {360, 1439, 1439}},
                                         NightCase{"SecondsDoNotCount",
                                                   "UTC",
                                                   "2024-03-15 23:00:59 +0000",
                                                   "2024-03-16 07:00:59 +0000",
                                                   {480, 300, 420}},
                                         NightCase{"FromMidnight",
                                                   "UTC",
                                                   "2024-03-16 00:00:00 +0000",
                                                   "2024-03-16 06:00:00 +0000",
                                                   {360, 360, 360}},
                                         NightCase{"AcrossTheYearsEnd",
                                                   "UTC",
                                                   "2023-12-31 23:30:00 +0000",
                                                   "2024-01-01 08:00:00 +0000",
                                                   {510, 330, 480}},
                                         NightCase{"OfTheLeapDay",
                                                   "UTC",
                                                   "2024-02-29 23:30:00 +0000",
                                                   "2024-03-01 07:30:00 +0000",
                                                   {480, 330, 450}},
                                         NightCase{"StampOfAnotherZone",
                                                   "UTC",
                                                   "2024-03-15 23:00:00 +0800",
                                                   "2024-03-16 07:00:00 +0800",
                                                   {480, 1260, 1380}},
                                         NightCase{"InShanghai",
                                                   "Asia/Shanghai",
                                                   "2024-03-15 23:00:00 +0800",
                                                   "2024-03-16 07:00:00 +0800",
                                                   {480, 300, 420}},
                                         NightCase{"InShanghaiWhenClocksWentForward",
                                                   "Asia/Shanghai",
                                                   "1990-04-14 23:00:00 +0800",
                                                   "1990-04-15 07:00:00 +0900",
                                                   {420, 300, 420}},
                                         NightCase{"InNewYorkWhenClocksGoForward",
                                                   "America/New_York",
                                                   "2024-03-09 23:00:00 -0500",
                                                   "2024-03-10 07:00:00 -0400",
                                                   {420, 300, 420}},
                                         NightCase{"InNewYorkWhenClocksGoBack",
                                                   "America/New_York",
                                                   "2024-11-02 23:00:00 -0400",
                                                   "2024-11-03 07:00:00 -0500",
                                                   {540, 300, 420}}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
