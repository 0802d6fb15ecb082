// One life, exported again and again: whatever the phone's clocks and units were at each export,
// and in whatever order the exports are imported, the database comes to hold the same samples.

#include "apps/import/ImportHarness.h"
#include "apps/import/WriterHarness.h"
#include "import/export/Units.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

/// A type, and the units in which a phone writes it: metric first, then others.
struct Kind {
  std::string_view type;
  std::vector<std::string_view> units;
};

const std::vector<Kind> kinds{
    {"StepCount", {"count"}},
    {"HeartRate", {"count/min"}},
    {"DistanceWalkingRunning", {"km", "mi"}},
    {"DistanceSwimming", {"km", "m", "yd"}},
    {"ActiveEnergyBurned", {"kcal", "Cal", "kJ"}},
    {"BodyMass", {"kg", "lb", "st"}},
    {"Height", {"cm", "in", "ft"}},
    {"BodyTemperature", {"degC", "degF"}},
    {"WaterTemperature", {"degC", "degF"}},
    {"WalkingSpeed", {"km/hr", "mi/hr"}},
    {"WalkingStepLength", {"cm", "in"}},
    {"StairAscentSpeed", {"m/s", "ft/s"}},
    {"DietaryWater", {"mL", "fl_oz_us", "cup_us"}},
    {"DietarySodium", {"mg", "g"}},
    {"BloodGlucose", {"mg/dL", "mmol<180.1558800000541>/L"}},
    {"BloodPressureSystolic", {"mmHg", "kPa"}},
    {"DepthOfSomeNewKind", {"m", "ft"}},  // no unit of ours: the first one stays
    {"PercentageOfSomeNewKind", {"%"}}};

/// Six digits, as the phone writes numbers.
std::string sixDigits(double number) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.6g", number);
  return text.data();
}

struct LivedSample {
  const Kind* kind;
  std::int64_t start;
  std::int64_t end;
  double number;  ///< in the first unit of its kind
};

struct LivedWorkout {
  std::int64_t start;
  double kilometres;
  double celsius;
};

/// What happened, whoever writes it down.
struct History {
  std::vector<LivedSample> samples;
  std::vector<LivedWorkout> workouts;
};

constexpr std::int64_t dayLength = 86400;

class Chance {
public:
  explicit Chance(std::uint32_t seed) : engine(seed) {}

  std::int64_t between(std::int64_t first, std::int64_t last) {
    return std::uniform_int_distribution<std::int64_t>(first, last)(engine);
  }

  template <typename Range>
  const auto& oneOf(const Range& range) {
    return range[static_cast<std::size_t>(
        between(0, static_cast<std::int64_t>(std::size(range)) - 1))];
  }

  template <typename Range>
  void shuffle(Range& range) {
    std::ranges::shuffle(range, engine);
  }

private:
  std::mt19937 engine;
};

/// Moments of years that have their own rules, before the first moment that computers count and
/// after the last that 32 bits do.
History randomHistory(Chance& chance) {
  constexpr std::array<std::int64_t, 5> years{
      -63158400, 567993600, 1009843200, 1704067200, 2335219200};  // 1968, 1988, 2002, 2024, 2044
  History history;
  std::int64_t minute = 0;
  for (const Kind& kind : kinds) {
    for (int count = 0; count < 4; ++count) {
      // No two samples of one type begin at once, however the numbers fall.
      const std::int64_t start =
          chance.oneOf(years) + chance.between(0, 365) * dayLength + 60 * ++minute;
      const double number = static_cast<double>(chance.between(0, 4000)) / 10;
      history.samples.push_back({&kind, start, start + chance.between(0, 3600), number});
    }
  }
  for (int count = 0; count < 3; ++count) {
    history.workouts.push_back(
        {chance.oneOf(years) + chance.between(0, 365) * dayLength + 60 * ++minute,
         static_cast<double>(chance.between(1, 420)) / 10,
         static_cast<double>(chance.between(-200, 400)) / 10});
  }
  return history;
}

/// How a phone is set at the moment of an export.
struct Phone {
  int offset;         ///< of its clocks, seconds east of UTC
  std::size_t units;  ///< which of the units of each kind; the last where there are fewer
};

class Document {
public:
  explicit Document(Phone phone) : phone(phone) {}

  std::string of(const History& history, std::size_t samples) const {
    std::string text = "<HealthData>\n<ExportDate" + at("value", 1717200000) + "/>\n";
    for (std::size_t index = 0; index < samples; ++index) text += record(history.samples[index]);
    for (const LivedWorkout& lived : history.workouts) text += night(lived);
    for (const LivedWorkout& lived : history.workouts) text += workout(lived);
    for (int day = 1; day <= 5; ++day) text += rings(day);
    return text + "</HealthData>";
  }

private:
  std::string at(const std::string& name, std::int64_t moment) const {
    const StampText stamp({.moment = moment, .offset = phone.offset});
    return " " + name + "=\"" + std::string(stamp.text()) + "\"";
  }

  std::string_view unitOf(const Kind& kind) const {
    return kind.units[std::min(phone.units, kind.units.size() - 1)];
  }

  std::string record(const LivedSample& lived) const {
    const std::string_view unit = unitOf(*lived.kind);
    const double number =
        Units::converted({.number = lived.number, .unit = lived.kind->units.front()}, unit).value();
    std::string escaped(unit);
    if (const std::size_t open = escaped.find('<'); open != std::string::npos) {
      escaped.replace(open, 1, "&lt;");
    }
    return "<Record type=\"HKQuantityTypeIdentifier" + std::string(lived.kind->type) +
           "\" sourceName=\"Phone\" unit=\"" + escaped + "\"" + at("creationDate", lived.end + 30) +
           at("startDate", lived.start) + at("endDate", lived.end) + " value=\"" +
           sixDigits(number) + "\"/>\n";
  }

  /// A stretch of sleep, and the same without an end and without a source.
  std::string night(const LivedWorkout& lived) const {
    const std::string type = "<Record type=\"HKCategoryTypeIdentifierSleepAnalysis\"";
    const std::string start = at("startDate", lived.start - 30000);
    const std::string value = " value=\"HKCategoryValueSleepAnalysisAsleepCore\"/>\n";
    const std::string source = " sourceName=\"Watch\"" + at("creationDate", lived.start);
    return type + source + start + at("endDate", lived.start - 10000) + value + type + source +
           start + value + type + start + at("endDate", lived.start - 20000) + value;
  }

  std::string rings(int day) const {
    constexpr std::array units{"kcal", "Cal", "kJ"};
    const double energy = 311.7 * day * (phone.units == 2 ? 4.184 : 1);
    return "<ActivitySummary dateComponents=\"2024-05-0" + std::to_string(day) +
           "\" activeEnergyBurned=\"" + sixDigits(energy) + "\" activeEnergyBurnedUnit=\"" +
           units.at(phone.units) + "\" appleStandHours=\"9\"/>\n";
  }

  std::string workout(const LivedWorkout& lived) const {
    const bool metric = phone.units == 0;
    const double distance = metric ? lived.kilometres : lived.kilometres / 1.609344;
    const double degrees = metric ? lived.celsius : lived.celsius * 9 / 5 + 32;
    return "<Workout workoutActivityType=\"HKWorkoutActivityTypeRunning\" duration=\"30\""
           " durationUnit=\"min\" sourceName=\"Phone\"" +
           at("creationDate", lived.start + 1900) + at("startDate", lived.start) +
           at("endDate", lived.start + 1800) +
           "><MetadataEntry key=\"HKWeatherTemperature\""
           " value=\"" +
           sixDigits(degrees) + (metric ? " degC" : " degF") +
           "\"/><MetadataEntry key=\"HKElevationAscended\" value=\"" +
           sixDigits(metric ? 4180 : 4180 / 30.48) + (metric ? " cm" : " ft") +
           "\"/><MetadataEntry key=\"HKWeatherHumidity\" value=\"5000 %\"/>"
           "<MetadataEntry key=\"HKIndoorWorkout\" value=\"0\"/>"
           "<WorkoutStatistics type=\"HKQuantityTypeIdentifierHeartRate\" average=\"141\""
           " minimum=\"95\" maximum=\"172\" unit=\"count/min\"/>"
           "<WorkoutStatistics type=\"HKQuantityTypeIdentifierActiveEnergyBurned\" sum=\"312.5\""
           " unit=\"" +
           (metric ? "kcal" : "Cal") +
           "\"/><WorkoutStatistics type=\"HKQuantityTypeIdentifierDistanceWalkingRunning\" sum=\"" +
           sixDigits(distance) + "\" unit=\"" + (metric ? "km" : "mi") + "\"/></Workout>\n";
  }

  Phone phone;
};

/// What one sample or workout left: its texts, and the numbers in units that are always the same.
struct Stored {
  std::string texts;
  std::vector<double> numbers;
};

class OneHistory : public Import {
protected:
  /// Imports `documents` one after the other for a member of a zone.
  std::string databaseOf(const std::string& member, const std::vector<std::string>& documents) {
    for (const std::string& document : documents) {
      writeExport(document);
      importFor(member, member);
    }
    return (root() / "members" / member / "health.db").string();
  }

  /// Appends what `sql` selects: so many texts, then so many numbers.
  static void append(std::vector<Stored>& all, const Database& database, const std::string& sql,
                     int texts, int numbers) {
    Statement query = database.prepare(sql);
    while (const std::optional<Row> row = query.next()) {
      Stored stored;
      for (int column = 0; column < texts; ++column) {
        stored.texts += row->find<std::string>(column).value_or("-") + "|";
      }
      for (int column = texts; column < texts + numbers; ++column) {
        stored.numbers.push_back(row->find<double>(column).value_or(0));
      }
      all.push_back(std::move(stored));
    }
  }

  /// Every column but `value` and `device`. The unit of the type that has none of ours is free.
  static std::vector<Stored> stored(const std::string& database) {
    const Database open(database, {});
    std::vector<Stored> all;
    append(all,
           open,
           "SELECT type, source_name, start_date, start_day, end_date, creation_date,"
           " CASE WHEN type <> 'DepthOfSomeNewKind' THEN unit END,"
           " CASE WHEN value_num IS NULL THEN value END, value_num IS NULL,"
           " CASE WHEN type = 'DepthOfSomeNewKind' AND unit = 'ft' THEN value_num * 0.3048"
           " ELSE value_num END FROM records ORDER BY 1, 3, 5, 2",
           9,
           1);
    append(all,
           open,
           "SELECT activity_type, source_name, start_date, start_day, end_date, creation_date,"
           " indoor, humidity_pct, basal_energy_kcal, avg_mets, duration_min, distance_km, temp_c,"
           " elevation_m, active_energy_kcal, hr_avg, hr_min, hr_max FROM workouts ORDER BY 3",
           10,
           8);
    append(all, open, "SELECT workout_id, data FROM workout_humidity ORDER BY 1", 2, 0);
    append(all,
           open,
           "SELECT date, active_energy_unit, active_energy_goal, move_time, move_time_goal,"
           " exercise_time, exercise_time_goal, stand_hours, stand_hours_goal, active_energy"
           " FROM activity_summary ORDER BY 1",
           9,
           1);
    return all;
  }

  static void expectSame(const std::vector<Stored>& one, const std::vector<Stored>& other) {
    ASSERT_EQ(one.size(), other.size());
    for (std::size_t index = 0; index < one.size(); ++index) {
      ASSERT_EQ(one[index].texts, other[index].texts);
      for (std::size_t number = 0; number < one[index].numbers.size(); ++number) {
        const double expected = one[index].numbers[number];
        // Six digits of a temperature in degF leave more open near 0 degC.
        const double near = 1e-5 * (std::abs(expected) + 18);
        const bool isTemperature = one[index].texts.find("Temperature") != std::string::npos ||
                                   one[index].texts.starts_with("Running");
        ASSERT_NEAR(other[index].numbers[number],
                    expected,
                    isTemperature ? near : 1e-5 * std::abs(expected))
            << one[index].texts;
      }
    }
  }
};

TEST_F(OneHistory, ComesOfAnyExportsInAnyOrder) {
  constexpr int combinations = 200;
  constexpr std::array zones{"Asia/Shanghai",
                             "America/New_York",
                             "Europe/Berlin",
                             "Australia/Lord_Howe",
                             "Asia/Kathmandu",
                             "America/St_Johns"};
  constexpr int quarter = 15 * 60;
  for (std::uint32_t seed = 1; seed <= combinations; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Chance chance(seed);
    const History history = randomHistory(chance);
    askedZone = chance.oneOf(zones);
    std::vector<std::string> documents;
    for (std::int64_t count = chance.between(1, 3); count >= 0; --count) {
      const Phone phone{.offset = quarter * static_cast<int>(chance.between(-12 * 4, 14 * 4)),
                        .units = static_cast<std::size_t>(chance.between(0, 2))};
      // The first of them is complete, the others are from earlier days.
      const auto all = static_cast<std::int64_t>(history.samples.size());
      const std::int64_t samples = documents.empty() ? all : chance.between(0, all);
      documents.push_back(Document(phone).of(history, static_cast<std::size_t>(samples)));
    }
    chance.shuffle(documents);
    std::filesystem::remove_all(root());

    const std::vector<Stored> plain = stored(databaseOf(
        "plain", {Document({.offset = 0, .units = 0}).of(history, history.samples.size())}));
    const std::string mixed = databaseOf("mixed", documents);

    expectSame(plain, stored(mixed));
    for (const std::string& units :
         rows(mixed,
              "SELECT COUNT(DISTINCT unit) FROM records WHERE unit IS NOT NULL GROUP BY type",
              1)) {
      ASSERT_EQ(units, "1");
    }
    if (HasFatalFailure()) return;
  }
}

}  // namespace
