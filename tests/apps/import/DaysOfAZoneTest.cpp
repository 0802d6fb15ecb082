// The days that the tools tell of an imported member, where clocks change and around midnight.

#include "apps/import/ImportHarness.h"
#include "mcp/tools/Tools.h"
#include "platform/Locale.h"
#include "platform/Logger.h"
#include "roster/Roster.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;
using testing::HasSubstr;

/// Steps around one change of clocks: the moments in UTC, and the days they belong to by the clocks
/// of the place.
struct ChangeCase {
  std::string name;
  std::string zone;
  int exportedAt;  ///< hours east of UTC, of the other season
  std::vector<std::pair<std::string, int>> samples;
  std::vector<std::pair<std::string, int>> days;
};

void PrintTo(const ChangeCase& value, std::ostream* out) { *out << value.name; }

class DaysOfAZone : public Import, public testing::WithParamInterface<ChangeCase> {
protected:
  void importSamples() {
    const ChangeCase& given = GetParam();
    std::string text = "<HealthData>";
    for (const auto& [utc, steps] : given.samples) {
      const std::int64_t moment = AppleFormat::stampParser.parse(utc + ":00 +0000").value();
      const auto stamp = [&](std::int64_t at) {
        return std::string(StampText({.moment = at, .offset = given.exportedAt * 3600}).text());
      };
      text +=
          "<Record type=\"HKQuantityTypeIdentifierStepCount\" sourceName=\"W\" unit=\"count\""
          " startDate=\"" +
          stamp(moment) + "\" endDate=\"" + stamp(moment + 60) + "\" value=\"" +
          std::to_string(steps) + "\"/>";
    }
    writeExport(text + "</HealthData>");
    askedZone = given.zone;
    importFor("Ann", "ann");
  }

  std::string answer(const std::string& tool, const json& arguments) const {
    const Clock clock = [] { return now; };
    Logger log(std::nullopt, Logger::Level::error, false, clock);
    Roster people(root() / "members.json", log, clock);
    people.load();
    return Tools::answer(tool, {arguments, people, log, SummaryLang::en, clock, DigitGrouping{}});
  }
};

TEST_P(DaysOfAZone, HoldTheSamplesThatItsClocksShowedOnThem) {
  const ZoneGuard zone(GetParam().zone);
  importSamples();

  std::string trend;
  for (const auto& [day, steps] : GetParam().days) {
    const std::string line = std::to_string(steps);
    EXPECT_THAT(answer("get_day", {{"date", day}}), HasSubstr("StepCount: " + line + " count"))
        << day;
    trend += "\n" + day + "  " + line;
  }
  EXPECT_THAT(answer("get_trend",
                     {{"metric", "steps"},
                      {"from", GetParam().days.front().first},
                      {"to", GetParam().days.back().first}}),
              HasSubstr("Daily:" + trend + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Changes, DaysOfAZone,
    testing::Values(
        // 10 March 2024 has 23 hours, from 05:00 to 04:00 UTC of the day after.
        ChangeCase{"SpringInNewYork",
                   "America/New_York",
                   -5,
                   {{"2024-03-10 04:59", 1},
                    {"2024-03-10 05:00", 2},
                    {"2024-03-10 07:30", 4},
                    {"2024-03-11 03:59", 8},
                    {"2024-03-11 04:00", 16}},
                   {{"2024-03-09", 1}, {"2024-03-10", 14}, {"2024-03-11", 16}}},
        // 3 November 2024 has 25, from 04:00 to 05:00 UTC of the day after.
        ChangeCase{"AutumnInNewYork",
                   "America/New_York",
                   -4,
                   {{"2024-11-03 03:59", 1},
                    {"2024-11-03 04:00", 2},
                    {"2024-11-03 05:30", 4},
                    {"2024-11-03 06:30", 8},
                    {"2024-11-04 04:59", 16},
                    {"2024-11-04 05:00", 32}},
                   {{"2024-11-02", 1}, {"2024-11-03", 30}, {"2024-11-04", 32}}},
        // 31 March 2024 begins at 23:00 UTC of the day before and ends at 22:00 UTC.
        ChangeCase{"SpringInBerlin",
                   "Europe/Berlin",
                   2,
                   {{"2024-03-30 22:59", 1},
                    {"2024-03-30 23:00", 2},
                    {"2024-03-31 01:30", 4},
                    {"2024-03-31 21:59", 8},
                    {"2024-03-31 22:00", 16}},
                   {{"2024-03-30", 1}, {"2024-03-31", 14}, {"2024-04-01", 16}}},
        // On Lord Howe the clocks go back half an hour: 7 April 2024 lasts from 13:00 to 13:30 UTC.
        ChangeCase{"AutumnOnLordHowe",
                   "Australia/Lord_Howe",
                   11,
                   {{"2024-04-06 12:59", 1},
                    {"2024-04-06 13:00", 2},
                    {"2024-04-06 15:10", 4},
                    {"2024-04-07 13:29", 8},
                    {"2024-04-07 13:30", 16}},
                   {{"2024-04-06", 1}, {"2024-04-07", 14}, {"2024-04-08", 16}}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
