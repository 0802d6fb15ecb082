// What the sample exports, read by an XML parser that is not ours and held against the household
// that it writes into databases.

#include "apps/sample/ReadExport.h"
#include "apps/sample/WrittenHousehold.h"
#include "platform/AppleFormat.h"
#include "platform/Files.h"
#include "sample/export/Export.h"
#include "store/HealthStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <iomanip>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;

Options optionsOf(const std::string& member = "Ann", std::uint64_t seed = 1) {
  return {.out = {},
          .exportTo = {},
          .member = member,
          .members = 3,
          .years = 1,
          .records = 20000,
          .seed = seed,
          .today = {},
          .asImported = false};
}

/// The export as text.
std::string exported(Options options) {
  const TemporaryFolder folder;
  options.exportTo = folder / "export.xml";
  std::ostringstream unseen;
  Progress progress(unseen, false, [] { return 0.0; });
  writeExport(options, sampleDay, unseen, progress);
  return fileContents(options.exportTo).value();
}

/// Ann's export, written and read once for all tests.
const ReadExport& annsExport() {
  static const ReadExport read(exported(optionsOf()));
  return read;
}

/// The household of Ann alone, as her devices or as an import of her export leave it.
WrittenHousehold annsHousehold(bool asImported = false) {
  Options options = optionsOf();
  options.member.reset();
  options.members = 1;
  options.asImported = asImported;
  return WrittenHousehold(options);
}

std::string withoutPrefix(const std::string& type) {
  for (const std::string prefix :
       {"HKQuantityTypeIdentifier", "HKCategoryTypeIdentifier", "HKWorkoutActivityType"}) {
    if (type.starts_with(prefix)) return type.substr(prefix.size());
  }
  return "no prefix: " + type;
}

TEST(Export, IsWellFormedAndHoldsWhatItsTypeSays) {
  const ReadExport& read = annsExport();

  EXPECT_EQ(read.error, "");
  EXPECT_EQ(read.documentType, "HealthData");
  EXPECT_EQ(read.root.name, "HealthData");
  EXPECT_EQ(read.root.text("locale"), "zh_CN");
  ASSERT_GT(read.root.children.size(), 2U);
  EXPECT_EQ(read.root.children[0].name, "ExportDate");
  EXPECT_EQ(read.root.children[0].text("value"), "2026-11-20 07:00:00 +0800");
  EXPECT_EQ(read.root.children[1].name, "Me");
}

/// The moment of a stamp, in seconds since 1970 UTC.
std::string momentOf(const std::string& stamp) {
  return std::to_string(AppleFormat::stampParser.parse(stamp).value());
}

TEST(Export, HoldsEveryRecordOfTheHouseholdInTheSameOrder) {
  const WrittenHousehold household = annsHousehold();
  std::vector<std::string> lines;
  for (const ExportElement& record : annsExport().root.all("Record")) {
    lines.push_back(withoutPrefix(record.text("type")) + '|' + record.text("sourceName") + '|' +
                    record.text("device") + '|' + record.text("unit") + '|' +
                    momentOf(record.text("startDate")) + '|' + momentOf(record.text("endDate")) +
                    '|' + momentOf(record.text("creationDate")) + '|' + record.text("value"));
  }

  EXPECT_EQ(lines,
            household.texts("ann-01",
                            "SELECT type || '|' || source_name || '|' || ifnull(device, '') || '|'"
                            " || ifnull(unit, '') || '|' || " +
                                momentSQL("start_date") + " || '|' || " + momentSQL("end_date") +
                                " || '|' || " + momentSQL("creation_date") +
                                " || '|' || value FROM records ORDER BY rowid"));
}

using Offsets = std::map<std::string, std::set<std::string>>;

/// Adds to `offsets`, by the element's name, the offset of every stamp in `element` and inside it.
void collectOffsets(const ExportElement& element, Offsets& offsets) {
  for (const auto& [name, value] : element.attributes) {
    if (AppleFormat::stampParser.parse(value)) offsets[element.name].insert(value.substr(20));
  }
  for (const ExportElement& child : element.children) collectOffsets(child, offsets);
}

Offsets offsetsIn(const ReadExport& read) {
  Offsets offsets;
  collectOffsets(read.root, offsets);
  return offsets;
}

/// The offsets of an export that has nothing but `offset` in all its elements with stamps.
Offsets everywhere(const std::set<std::string>& elements, const std::string& offset) {
  Offsets offsets;
  for (const std::string& element : elements) offsets[element] = {offset};
  return offsets;
}

const std::set<std::string> stampedOfAnn{
    "ExportDate", "Record", "Workout", "WorkoutEvent", "WorkoutStatistics"};
const std::set<std::string> stampedOfBen{"ExportDate", "Record", "Workout", "WorkoutEvent"};

TEST(Export, HasTheOffsetOfItsMomentInEveryStamp) {
  EXPECT_EQ(offsetsIn(annsExport()), everywhere(stampedOfAnn, "+0800"));
  EXPECT_EQ(offsetsIn(ReadExport(exported(optionsOf("Ben")))), everywhere(stampedOfBen, "-0500"));
}

TEST(Export, HasTheOffsetThatIsAskedForInEveryStamp) {
  Options options = optionsOf("Ben");
  options.offset = 5 * 3600 + 45 * 60;
  EXPECT_EQ(offsetsIn(ReadExport(exported(options))), everywhere(stampedOfBen, "+0545"));

  options = optionsOf("Ann");
  options.offset = -4 * 3600;
  EXPECT_EQ(offsetsIn(ReadExport(exported(options))), everywhere(stampedOfAnn, "-0400"));
}

/// The element with moments for stamps, as text.
std::string withMoments(const ExportElement& element) {
  std::string text = element.name;
  for (const auto& [name, value] : element.attributes) {
    const auto moment = AppleFormat::stampParser.parse(value);
    text += ' ' + name + '=' + (moment ? std::to_string(*moment) : value);
  }
  for (const ExportElement& child : element.children) {
    // The clock times of beats have no offset of their own.
    if (child.name != "HeartRateVariabilityMetadataList") text += '\n' + withMoments(child);
  }
  return text;
}

TEST(Export, IsTheSameAtAnyOffsetButForItsClocks) {
  Options options = optionsOf();
  options.offset = -5 * 3600;
  const ReadExport read(exported(options));

  EXPECT_NE(read.root.children[0].text("value"), annsExport().root.children[0].text("value"));
  EXPECT_TRUE(withMoments(read.root) == withMoments(annsExport().root));
}

/// The sum or the attribute `what` of a workout's statistics of a type that begins with `type`.
std::optional<double> statistic(const ExportElement& workout, const std::string& type,
                                const std::string& what) {
  for (const ExportElement& statistics : workout.all("WorkoutStatistics")) {
    if (!withoutPrefix(statistics.text("type")).starts_with(type)) continue;
    const std::string text = statistics.text(what);
    if (!text.empty()) return std::strtod(text.c_str(), nullptr);
  }
  return std::nullopt;
}

/// The number in the entry `key` of a workout, `divisor` of its unit to one.
std::optional<double> entry(const ExportElement& workout, const std::string& key,
                            const std::string& unit, double divisor = 1) {
  for (const ExportElement& each : workout.all("MetadataEntry")) {
    if (each.text("key") != key) continue;
    char* end = nullptr;
    const std::string value = each.text("value");
    const double number = std::strtod(value.c_str(), &end);
    EXPECT_EQ(std::string(end), unit) << key;
    return number / divisor;
  }
  return std::nullopt;
}

/// The workout of an element, with moments for stamps.
WorkoutEntry entryOf(const ExportElement& workout) {
  WorkoutEntry read;
  read.activity_type = withoutPrefix(workout.text("workoutActivityType"));
  read.start = momentOf(workout.text("startDate"));
  read.end = momentOf(workout.text("endDate"));
  read.source = workout.text("sourceName");
  EXPECT_EQ(workout.text("durationUnit"), "min");
  read.duration_min = std::strtod(workout.text("duration").c_str(), nullptr);
  read.distance_km = statistic(workout, "Distance", "sum");
  read.active_energy_kcal = statistic(workout, "ActiveEnergyBurned", "sum");
  read.basal_energy_kcal = statistic(workout, "BasalEnergyBurned", "sum");
  read.hr_avg = statistic(workout, "HeartRate", "average");
  read.hr_min = statistic(workout, "HeartRate", "minimum");
  read.hr_max = statistic(workout, "HeartRate", "maximum");
  read.elevation_m = entry(workout, "HKElevationAscended", " cm", 100);
  read.avg_mets = entry(workout, "HKAverageMETs", " kcal/hr·kg");
  if (const auto indoor = entry(workout, "HKIndoorWorkout", "")) read.indoor = *indoor == 1;
  read.temp_c = entry(workout, "HKWeatherTemperature", " degC");
  if (const auto humidity = entry(workout, "HKWeatherHumidity", " %")) {
    read.humidity.emplace().raw_value = humidity;
    read.humidity->raw_unit = "%";
    read.humidity->encoding = "xml_percent";
    read.humidity->source_version = workout.text("sourceVersion");
  }
  return read;
}

TEST(Export, HoldsEveryWorkoutWithFiguresThatComeBackAsTheyWere) {
  const WrittenHousehold household = annsHousehold(true);
  Logger quiet(std::nullopt, Logger::Level::error, false, [] { return 0.0; });
  std::vector<WorkoutEntry> stored =
      HealthStore(household.database("ann-01"), {}, quiet).workoutDetails({}, {});
  for (WorkoutEntry& workout : stored) {
    workout.start = momentOf(workout.start);
    workout.end = momentOf(workout.end);
  }
  std::vector<WorkoutEntry> read;
  for (const ExportElement& workout : annsExport().root.all("Workout")) {
    read.push_back(entryOf(workout));
  }

  EXPECT_GT(read.size(), 50U);
  EXPECT_THAT(read, testing::UnorderedElementsAreArray(stored));
}

/// Ann's export from a phone that measures in miles, read once for all tests.
const ReadExport& annsImperialExport() {
  static const ReadExport read = [] {
    Options options = optionsOf();
    options.units = UnitSystem::imperial;
    return ReadExport(exported(options));
  }();
  return read;
}

/// `value` in the basic unit of what `unit` measures; as it is when `unit` is in both systems.
double inBasicUnit(double value, const std::string& unit) {
  static const std::map<std::string, double> factors{{"km", 1000},
                                                     {"mi", 1609.344},
                                                     {"yd", 0.9144},
                                                     {"cm", 0.01},
                                                     {"in", 0.0254},
                                                     {"km/hr", 1 / 3.6},
                                                     {"mi/hr", 0.44704},
                                                     {"ft/s", 0.3048},
                                                     {"lb", 0.45359237},
                                                     {"kJ", 1 / 4.184},
                                                     {"fl_oz_us", 29.5735295625}};
  if (unit == "degF") return (value - 32) * 5 / 9;
  const auto found = factors.find(unit);
  return found == factors.end() ? value : value * found->second;
}

TEST(Export, InImperialUnitsHoldsTheSameAmounts) {
  const std::vector<ExportElement> metric = annsExport().root.all("Record");
  const std::vector<ExportElement> imperial = annsImperialExport().root.all("Record");
  std::set<std::string> changes;
  ASSERT_EQ(imperial.size(), metric.size());
  for (std::size_t index = 0; index < metric.size(); ++index) {
    ExportElement read = imperial[index];
    const std::string type = withoutPrefix(read.text("type"));
    const std::string unit = read.text("unit");
    const std::string before = metric[index].text("unit");
    if (unit != before) {
      changes.insert(type + ' ' + before + ' ' + unit);
      const double value = inBasicUnit(std::stod(read.text("value")), unit);
      const double expected = inBasicUnit(std::stod(metric[index].text("value")), before);
      ASSERT_NEAR(value, expected, 1e-5 * expected) << type;
      read.attributes["value"] = metric[index].text("value");
      read.attributes["unit"] = before;
    }
    ASSERT_EQ(withMoments(read), withMoments(metric[index]));
  }

  EXPECT_THAT(changes,
              ElementsAre("ActiveEnergyBurned kcal Cal",
                          "AppleSleepingWristTemperature degC degF",
                          "BasalEnergyBurned kcal Cal",
                          "BodyMass kg lb",
                          "DietaryEnergyConsumed kJ Cal",
                          "DietaryEnergyConsumed kcal Cal",
                          "DietaryWater mL fl_oz_us",
                          "DistanceCycling km mi",
                          "DistanceDownhillSnowSports m mi",
                          "DistanceSwimming m yd",
                          "DistanceWalkingRunning km mi",
                          "LeanBodyMass kg lb",
                          "StairAscentSpeed m/s ft/s",
                          "StairDescentSpeed m/s ft/s",
                          "WalkingSpeed km/hr mi/hr",
                          "WalkingStepLength cm in"));
}

/// The unit of a workout's statistics of a type that begins with `type`; "" without any.
std::string statisticUnit(const ExportElement& workout, const std::string& type) {
  for (const ExportElement& statistics : workout.all("WorkoutStatistics")) {
    if (withoutPrefix(statistics.text("type")).starts_with(type)) return statistics.text("unit");
  }
  return "";
}

std::optional<double> converted(std::optional<double> value, const std::string& unit) {
  if (!value) return std::nullopt;
  return inBasicUnit(*value, unit);
}

void expectNear(std::optional<double> imperial, std::optional<double> metric) {
  ASSERT_EQ(imperial.has_value(), metric.has_value());
  if (metric) {
    EXPECT_NEAR(*imperial, *metric, 1e-5 * std::abs(*metric));
  }
}

TEST(Export, InImperialUnitsHoldsTheSameWorkouts) {
  const std::vector<ExportElement> metric = annsExport().root.all("Workout");
  const std::vector<ExportElement> imperial = annsImperialExport().root.all("Workout");
  std::set<std::string> units;
  ASSERT_EQ(imperial.size(), metric.size());
  for (std::size_t index = 0; index < metric.size(); ++index) {
    const ExportElement& before = metric[index];
    const ExportElement& read = imperial[index];
    for (const std::string type :
         {"Distance", "ActiveEnergyBurned", "BasalEnergyBurned", "HeartRate"}) {
      const std::string unit = statisticUnit(read, type);
      if (!unit.empty()) units.insert(type + ' ' + unit);
      expectNear(converted(statistic(read, type, "sum"), unit),
                 converted(statistic(before, type, "sum"), statisticUnit(before, type)));
      EXPECT_EQ(statistic(read, type, "average"), statistic(before, type, "average"));
    }
    const auto weather = entry(read, "HKWeatherTemperature", " degF");
    expectNear(converted(weather, "degF"), entry(before, "HKWeatherTemperature", " degC"));
    for (const auto& [key, unit] : {std::pair("HKElevationAscended", " cm"),
                                    std::pair("HKAverageMETs", " kcal/hr·kg"),
                                    std::pair("HKWeatherHumidity", " %")}) {
      EXPECT_EQ(entry(read, key, unit), entry(before, key, unit));
    }
  }

  EXPECT_THAT(units,
              ElementsAre("ActiveEnergyBurned Cal",
                          "BasalEnergyBurned Cal",
                          "Distance mi",
                          "Distance yd",
                          "HeartRate count/min"));
}

TEST(Export, InImperialUnitsFillsTheSameRings) {
  const std::vector<ExportElement> metric = annsExport().root.all("ActivitySummary");
  const std::vector<ExportElement> imperial = annsImperialExport().root.all("ActivitySummary");

  ASSERT_EQ(imperial.size(), metric.size());
  for (std::size_t index = 0; index < metric.size(); ++index) {
    ExportElement read = imperial[index];
    EXPECT_EQ(read.text("activeEnergyBurnedUnit"), "Cal");
    expectNear(std::stod(read.text("activeEnergyBurned")),
               std::stod(metric[index].text("activeEnergyBurned")));
    read.attributes["activeEnergyBurnedUnit"] = "kcal";
    read.attributes["activeEnergyBurned"] = metric[index].text("activeEnergyBurned");
    EXPECT_EQ(read.attributes, metric[index].attributes);
  }
}

TEST(Export, IsMetricUnlessSaid) {
  Options options = optionsOf("Ben");
  options.units = UnitSystem::metric;

  EXPECT_TRUE(exported(options) == exported(optionsOf("Ben")));
}

TEST(Export, SaysOfEveryWorkoutThatItIsOneSegment) {
  for (const ExportElement& workout : annsExport().root.all("Workout")) {
    const std::vector<ExportElement> events = workout.all("WorkoutEvent");
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].text("type"), "HKWorkoutEventTypeSegment");
    EXPECT_EQ(events[0].text("date"), workout.text("startDate"));
  }
}

TEST(Export, GivesEveryVariabilityTheBeatsItWasMeasuredOn) {
  std::size_t variabilities = 0;
  for (const ExportElement& record : annsExport().root.all("Record")) {
    const std::vector<ExportElement> lists = record.all("HeartRateVariabilityMetadataList");
    const bool isVariability = withoutPrefix(record.text("type")) == "HeartRateVariabilitySDNN";
    ASSERT_EQ(lists.size(), isVariability ? 1U : 0U);
    if (!isVariability) continue;
    ++variabilities;
    EXPECT_GT(lists[0].children.size(), 30U);
    for (const ExportElement& beat : lists[0].children) {
      EXPECT_THAT(beat.text("time"),
                  testing::MatchesRegex("1?[0-9]:[0-5][0-9]:[0-5][0-9]\\.[0-9][0-9] [AP]M"));
    }
    const std::string hour =
        std::to_string((std::stoi(record.text("startDate").substr(11)) + 11) % 12 + 1);
    EXPECT_EQ(lists[0].children[0].text("time").substr(0, hour.size() + 3),
              hour + record.text("startDate").substr(13, 3));
  }
  EXPECT_GT(variabilities, 100U);
}

TEST(Export, TellsWhereSomebodySlept) {
  std::set<std::string> zones;
  for (const ExportElement& record : annsExport().root.all("Record")) {
    if (withoutPrefix(record.text("type")) != "SleepAnalysis") continue;
    ASSERT_EQ(record.children.size(), 1U);
    EXPECT_EQ(record.children[0].text("key"), "HKTimeZone");
    zones.insert(record.children[0].text("value"));
  }

  EXPECT_THAT(zones, ElementsAre("America/New_York", "Asia/Shanghai"));
}

TEST(Export, SumsUpTheRingsOfEveryDayFromTheWatch) {
  const WrittenHousehold household = annsHousehold();
  std::vector<std::string> rings;
  for (const ExportElement& day : annsExport().root.all("ActivitySummary")) {
    EXPECT_EQ(day.text("activeEnergyBurnedUnit"), "kcal");
    std::ostringstream line;
    line << std::fixed << std::setprecision(3) << day.text("dateComponents") << ' '
         << std::stod(day.text("activeEnergyBurned")) << ' ' << day.text("appleExerciseTime") << ' '
         << day.text("appleStandHours");
    rings.push_back(line.str());
  }

  EXPECT_GT(rings.size(), 300U);
  EXPECT_EQ(
      rings,
      household.texts(
          "ann-01",
          "SELECT printf('%s %.3f %d %d', start_day,"
          " ifnull(sum(value_num) FILTER (WHERE type = 'ActiveEnergyBurned'), 0),"
          " ifnull(sum(value_num) FILTER (WHERE type = 'AppleExerciseTime'), 0),"
          " count(*) FILTER (WHERE value LIKE '%AppleStandHourStood')) FROM records"
          " WHERE source_name LIKE '%Watch' AND type IN ('ActiveEnergyBurned', 'AppleExerciseTime',"
          " 'AppleStandHour') GROUP BY start_day ORDER BY start_day"));
}

TEST(Export, IsTheSameForTheSameSeed) {
  EXPECT_EQ(exported(optionsOf("Ben")), exported(optionsOf("Ben")));
  EXPECT_NE(exported(optionsOf("Ben")), exported(optionsOf("Ben", 2)));
}

TEST(Export, OfAPhoneAloneHasNoRingsAndAnotherLocale) {
  const ReadExport read(exported(optionsOf("ben-02")));

  EXPECT_EQ(read.error, "");
  EXPECT_EQ(read.root.text("locale"), "en_US");
  EXPECT_GT(read.root.all("Record").size(), 1000U);
  EXPECT_THAT(read.root.all("ActivitySummary"), testing::IsEmpty());
}

TEST(Export, OfNobodysLifeIsADocumentAllTheSame) {
  const ReadExport read(exported(optionsOf("小美")));

  EXPECT_EQ(read.error, "");
  EXPECT_EQ(read.root.children.size(), 2U);
}

TEST(Export, MarksWhatWasTypedIn) {
  Options options = optionsOf("David");
  options.members = 5;
  const ReadExport read(exported(options));
  std::vector<ExportElement> typed;
  for (const ExportElement& record : read.root.all("Record")) {
    if (record.text("sourceName") == "Health") typed.push_back(record);
  }

  ASSERT_EQ(typed.size(), 1U);
  EXPECT_EQ(typed[0].text("startDate").substr(0, 10), "2026-11-29");
  EXPECT_EQ(typed[0].text("device"), "");
  ASSERT_EQ(typed[0].children.size(), 1U);
  EXPECT_EQ(typed[0].children[0].text("key"), "HKWasUserEntered");
}

TEST(Export, RefusesAStranger) { EXPECT_THROW(exported(optionsOf("Zoe")), UsageError); }

}  // namespace
