// Exports with every flaw that the sample can make, brought in with the built program: what the
// database then holds, against an import of the same export without flaws.

#include "apps/import/DatabaseContents.h"
#include "support/ChildProcess.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <ostream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

/// What an import comes to.
struct FlawCase {
  std::string flaw;          ///< its name
  Lines added = {};          ///< rows beyond those of the clean export, in any order
  std::string told = {};     ///< words of the report
  std::string refused = {};  ///< words of the refusal instead, as a regular expression
  std::string file = "export.zip";
};

void PrintTo(const FlawCase& value, std::ostream* out) { *out << value.flaw << ' ' << value.file; }

/// A stored record from the flaws' own week: its columns after the device.
std::string record(const std::string& type, const std::string& rest,
                   const std::string& source = "Flaws") {
  return "records: " + type + "|" + source + "|\\N|" + rest;
}

/// The columns from the unit on, of a record on the first day of that week.
std::string on(const std::string& unit, const std::string& start, const std::string& end,
               const std::string& value) {
  const std::string day = "2025-11-13";
  const std::string zone = " +0800|";
  return unit + "|" + day + " " + start + zone + day + "|" + day + " " + end + zone + day + " " +
         end + zone + value + "|";
}

/// The same of a stage of sleep.
std::string night(const std::string& start, const std::string& end, const std::string& stage) {
  return "\\N|" + start + " +0800|" + start.substr(0, 10) + "|" + end + " +0800|" + end +
         " +0800|HKCategoryValueSleepAnalysis" + stage + "|\\N|";
}

/// A stored ride of half an hour, from its distance on.
std::string ride(const std::string& start, const std::string& end, const std::string& figures) {
  const std::string first = "2025-11-13 " + start + " +0800|";
  const std::string last = "2025-11-13 " + end + " +0800|";
  std::string line =
      "workouts: Cycling|30.0|Flaws|" + first + "2025-11-13|" + last + last + figures;
  for (int column = 0; column < 9; ++column) line += "\\N|";
  return line;
}

const std::string otherProgram = "Flaws of another program";
const std::string nothing = "\\N";

const std::vector<FlawCase> cases{
    {.flaw = "repeated-attributes", .told = "attributes that stand twice: "},
    {.flaw = "control-characters", .told = "forbidden characters dropped: "},
    {.flaw = "workout-activities", .told = "WorkoutActivity 104"},
    {.flaw = "device-addresses"},
    {.flaw = "eight-times", .told = "records: 1,703, 1,143 of them new"},
    {.flaw = "mixed-units",
     .added =
         {record("BodyMass", on("kg", "08:00:00", "08:00:00", "70|70.0")),
          record("BodyMass", on("kg", "08:01:00", "08:01:00", "154.324|70.00018890788")),
          record("BodyMass", on("kg", "08:02:00", "08:02:00", "11.0231|69.999916752458")),
          record("DistanceWalkingRunning", on("km", "08:10:00", "08:20:00", "1.60934|1.60934")),
          record("DistanceWalkingRunning", on("km", "08:20:00", "08:30:00", "1|1.609344")),
          record("DistanceWalkingRunning", on("km", "08:30:00", "08:40:00", "1609.34|1.60934")),
          record("ActiveEnergyBurned", on("kcal", "08:40:00", "08:50:00", "100|100.0")),
          record("ActiveEnergyBurned", on("kcal", "08:50:00", "09:00:00", "100|100.0")),
          record("ActiveEnergyBurned", on("kcal", "09:00:00", "09:10:00", "418.4|100.0")),
          record("Height", on("cm", "09:10:00", "09:10:00", "180|180.0")),
          record("Height", on("cm", "09:11:00", "09:11:00", "70.8661|179.999894")),
          record("BodyTemperature", on("degC", "09:12:00", "09:12:00", "36.5|36.5")),
          record("BodyTemperature", on("degC", "09:13:00", "09:13:00", "97.7|36.5")),
          record("BloodGlucose", on("mg/dL", "09:14:00", "09:14:00", "90|90.0")),
          record("BloodGlucose", on("mg/dL", "09:15:00", "09:15:00", "4.99567|89.999932503987")),
          record("OxygenSaturation", on("%", "09:16:00", "09:16:00", "0.97|0.97"))}},
    {.flaw = "correlations",
     .added = {record("BloodPressureSystolic", on("mmHg", "12:00:00", "12:00:00", "118|118.0")),
               record("BloodPressureDiastolic", on("mmHg", "12:00:00", "12:00:00", "76|76.0"))},
     .told = "Correlation 1"},
    {.flaw = "workout-totals",
     .added = {ride("13:00:00", "13:30:00", "10.5|240.0|"),
               ride("14:00:00", "14:30:00", "10.5|240.0|"),
               ride("15:00:00", "15:30:00", "10.5|240.0|"),
               ride("16:00:00", "16:30:00", "\\N|\\N|")}},
    {.flaw = "bare-names",
     .added = {record("SleepDurationGoal", on("hr", "10:00:00", "10:00:00", "8|8.0")),
               record("StateOfMind", on(nothing, "10:01:00", "10:01:00", "\\N|\\N")),
               record("AppleSleepingBreathingDisturbances",
                      on("count", "10:02:00", "10:02:00", "12|12.0")),
               record("MindfulSession", on(nothing, "10:03:00", "10:08:00", "\\N|\\N"))}},
    {.flaw = "two-sleep-programs",
     .added =
         {record("SleepAnalysis", night("2025-11-13 22:40:00", "2025-11-14 07:00:00", "InBed")),
          record("SleepAnalysis", night("2025-11-13 23:00:00", "2025-11-14 06:50:00", "Asleep")),
          record("SleepAnalysis",
                 night("2025-11-13 23:05:00", "2025-11-13 23:20:00", "AsleepUnspecified"),
                 otherProgram),
          record("SleepAnalysis", night("2025-11-13 23:20:00", "2025-11-14 02:40:00", "AsleepCore"),
                 otherProgram),
          record("SleepAnalysis", night("2025-11-14 02:40:00", "2025-11-14 04:20:00", "AsleepDeep"),
                 otherProgram),
          record("SleepAnalysis", night("2025-11-14 04:20:00", "2025-11-14 04:30:00", "Awake"),
                 otherProgram),
          record("SleepAnalysis", night("2025-11-14 04:30:00", "2025-11-14 06:40:00", "AsleepREM"),
                 otherProgram)}},
    {.flaw = "old-rings",
     .added = {"activity_summary: 2025-11-13|300.0|500.0|kcal|35.0|30.0|20.0|30.0|9.0|12.0|"}},
    {.flaw = "no-numbers",
     .added = {record("HeartRate", on("count/min", "11:40:00", "11:40:00", "NaN|\\N")),
               record("HeartRate", on("count/min", "11:41:00", "11:41:00", "1e309|\\N")),
               record("HeartRate", on("count/min", "11:42:00", "11:42:00", "|\\N")),
               record("HeartRate", on("count/min", "11:43:00", "11:43:00", "72,5|\\N")),
               record("HeartRate", on("count/min", "11:44:00", "11:44:00", "-inf|\\N"))}},
    {.flaw = "twelve-hour-stamps",
     .added = {record("HeartRate",
                      "count/min|2025-11-13 3:04:05\u202FPM +0800|2025-11-13|"
                      "2025-11-13 3:04:05\u202FPM +0800|\\N|72|72.0|"),
               record("SleepAnalysis",
                      "\\N|2025-11-13 11:10:00\u202FPM +0800|2025-11-13|"
                      "2025-11-14 6:50:00\u202FAM +0800|\\N|HKCategoryValueSleepAnalysisAsleep|"
                      "\\N|")},
     .told = "stamps without a readable time: 4"},
    {.flaw = "other-elements", .told = "Audiogram 1, ClinicalRecord 1, "},
    {.flaw = "broken-document-type"},
    {.flaw = "no-export-date"},
    {.flaw = "no-me"},
    {.flaw = "other-names"},
    {.flaw = "mac-twins"},
    {.flaw = "stored-entry"},
    {.flaw = "data-descriptor"},
    {.flaw = "zip64"},
    {.flaw = "cda-beside"},
    {.flaw = "other-files", .told = "route files 1, ECG files 1, clinical record files 1"},
    {.flaw = "entity-bomb", .refused = "an entity is not defined"},
    {.flaw = "cda-alone", .refused = "There is no export\\.xml"},
    {.flaw = "cda-alone",
     .refused = "the file wanted is the export\\.xml",
     .file = "export_cda.xml"},
    {.flaw = "cut-off", .refused = "is not a complete zip archive, it may be cut off"},
    {.flaw = "cut-off", .refused = "Nothing was stored", .file = "export.xml"},
    {.flaw = "empty", .refused = "There is no export\\.xml"},
    {.flaw = "empty", .refused = "no export of the Health app", .file = "export.xml"},
    {.flaw = "cloud-stub", .refused = "export\\.zip has not been downloaded"},
    {.flaw = "cloud-stub", .refused = "export\\.xml has not been downloaded", .file = "export.xml"},
    {.flaw = "utf-16", .refused = "UTF-16"},
    {.flaw = "utf-16-mark", .refused = "UTF-16"},
    {.flaw = "other-encoding", .refused = "windows-1252"},
};

/// An export of Ann's and what an import makes of it, in a folder of their own.
class FlawedExport {
public:
  explicit FlawedExport(const std::vector<std::string>& flaws,
                        const std::string& file = "export.zip") {
    Lines arguments{"--export", file, "--years", "1", "--records", "1000", "--today", "2026-11-20"};
    for (const std::string& flaw : flaws) arguments.insert(arguments.end(), {"--flaw", flaw});
    exported = run(LARKSPUR_SAMPLE_PROGRAM, arguments);
    imported = run(LARKSPUR_IMPORT_PROGRAM,
                   {"--data-root",
                    "root",
                    "--member",
                    "Ann",
                    "--id",
                    "ann",
                    "--time-zone",
                    "Asia/Shanghai",
                    file});
  }

  /// The rows of the database, in order; those of the statistics, which follow from the others, are
  /// left out. A device's address is no part of what it is.
  Lines rows() const {
    const std::regex address("HKDevice: 0x[0-9a-f]+");
    std::istringstream contents(databaseContents(folder / "root/members/ann/health.db"));
    Lines lines;
    for (std::string line; std::getline(contents, line);) {
      if (line.starts_with("stat_")) continue;
      lines.push_back(std::regex_replace(line, address, "HKDevice: 0x"));
    }
    std::ranges::sort(lines);
    return lines;
  }

  TemporaryFolder folder;
  EnvironmentGuard english{
      {"LANGUAGE", std::nullopt}, {"LC_ALL", "en_US.UTF-8"}, {"TZ", "Asia/Shanghai"}};
  ChildProcess::Ending exported;
  ChildProcess::Ending imported;

private:
  ChildProcess::Ending run(const char* program, const Lines& arguments) const {
    return ChildProcess(program, arguments, folder.path()).finished();
  }
};

const Lines& cleanRows() {
  static const Lines rows = FlawedExport({}).rows();
  return rows;
}

/// The clean rows and these.
Lines cleanRowsAnd(Lines added) {
  added.insert(added.end(), cleanRows().begin(), cleanRows().end());
  std::ranges::sort(added);
  return added;
}

/// The lines of `one` that `other` has not; both are in order.
Lines beyond(const Lines& one, const Lines& other) {
  Lines lines;
  std::ranges::set_difference(one, other, std::back_inserter(lines));
  return lines;
}

void expectRows(const Lines& found, const Lines& expected) {
  EXPECT_THAT(beyond(found, expected), testing::IsEmpty());
  EXPECT_THAT(beyond(expected, found), testing::IsEmpty());
}

class FlawedImport : public testing::TestWithParam<FlawCase> {};

TEST_P(FlawedImport, StoresWhatTheExportSaysOrNothing) {
  const FlawCase& wanted = GetParam();

  const FlawedExport made({wanted.flaw}, wanted.file);

  ASSERT_EQ(made.exported.status, 0) << made.exported.errors;
  if (wanted.refused.empty()) {
    EXPECT_EQ(made.imported.status, 0) << made.imported.errors;
    EXPECT_THAT(made.imported.output, testing::HasSubstr(wanted.told));
    ASSERT_GT(cleanRows().size(), 1000U);
    expectRows(made.rows(), cleanRowsAnd(wanted.added));
  } else {
    EXPECT_EQ(made.imported.status, 1);
    EXPECT_THAT(made.imported.errors, testing::ContainsRegex(wanted.refused));
    EXPECT_FALSE(std::filesystem::exists(made.folder / "root"));
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, FlawedImport, testing::ValuesIn(cases), [](const auto& test) {
  std::string name = test.param.flaw + "_" + test.param.file;
  std::ranges::replace_if(
      name, [](char letter) { return letter == '-' || letter == '.'; }, '_');
  return name;
});

TEST(FlawedImports, AreTriedForEveryFlawThatTheSampleHas) {
  const TemporaryFolder folder;
  std::istringstream list(
      ChildProcess(LARKSPUR_SAMPLE_PROGRAM, {"--flaw", "list"}, folder.path()).finished().output);
  Lines names;
  for (std::string line; std::getline(list, line);) names.push_back(line.substr(0, line.find(' ')));

  Lines tried;
  for (const FlawCase& row : cases) {
    if (row.file == "export.zip") tried.push_back(row.flaw);
  }

  EXPECT_THAT(tried, testing::UnorderedElementsAreArray(names));
}

TEST(FlawedImports, TakeAllFlawsTogether) {
  Lines added;
  for (const FlawCase& row : cases) added.insert(added.end(), row.added.begin(), row.added.end());

  const FlawedExport made({"all"});

  EXPECT_EQ(made.imported.status, 0) << made.imported.errors;
  expectRows(made.rows(), cleanRowsAnd(added));
}

TEST(FlawedImports, AddNothingWhenOnlyTheAddressesOfDevicesHaveChanged) {
  const FlawedExport clean({});
  const FlawedExport changed({"device-addresses"});
  const std::string root = (clean.folder / "root").string();

  const ChildProcess::Ending again =
      ChildProcess(LARKSPUR_IMPORT_PROGRAM,
                   {"--data-root", root, "--member", "Ann", "export.zip"},
                   changed.folder.path())
          .finished();

  EXPECT_EQ(again.status, 0) << again.errors;
  EXPECT_THAT(again.output, testing::HasSubstr("records: 1,143, 0 of them new"));
}

}  // namespace
