// One life, exported again and again: whatever the phone's clocks and units were at each export,
// and in whatever order the exports are imported, the database comes to hold the same samples.

#include "ImportHarness.h"
#include "WriterHarness.h"
#include "import/Units.h"

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

constexpr std::int64_t day = 86400;

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
      const std::int64_t start = chance.oneOf(years) + chance.between(0, 365) * day + 60 * ++minute;
      const double number = static_cast<double>(chance.between(0, 4000)) / 10;
      history.samples.push_back({&kind, start, start + chance.between(0, 3600), number});
    }
  }
  for (int count = 0; count < 3; ++count) {
    history.workouts.push_back({chance.oneOf(years) + chance.between(0, 365) * day + 60 * ++minute,
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
    for (const LivedWorkout& lived : history.workouts) text += workout(lived);
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

  static std::vector<Stored> stored(const std::string& database) {
    const Database open(database, {});
    std::vector<Stored> all =
        open.prepare(
                "SELECT type, source_name, start_date, start_day, end_date, creation_date,"
                " unit, value_num FROM records ORDER BY type, start_date, end_date")
            .readAll([](const Row& row) {
              Stored sample;
              for (int column = 0; column < 6; ++column) sample.texts += row.text(column) + "|";
              const std::string unit = row.text(6);
              const double number = row.find<double>(7).value();
              const bool free = row.text(0) == "DepthOfSomeNewKind";
              if (!free) sample.texts += unit;
              sample.numbers = {
                  free ? Units::converted({.number = number, .unit = unit}, "m").value() : number};
              return sample;
            });
    const std::vector<Stored> workouts =
        open.prepare(
                "SELECT activity_type, source_name, start_date, start_day, end_date,"
                " creation_date, distance_km, temp_c, duration_min FROM workouts"
                " ORDER BY start_date")
            .readAll([](const Row& row) {
              Stored workout;
              for (int column = 0; column < 6; ++column) workout.texts += row.text(column) + "|";
              for (int column = 6; column < 9; ++column) {
                workout.numbers.push_back(row.find<double>(column).value());
              }
              return workout;
            });
    all.insert(all.end(), workouts.begin(), workouts.end());
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
  constexpr std::array offsets{-12 * 60, -570, -300, -240, -210, 0, 60, 120, 330, 345, 480, 840};
  for (std::uint32_t seed = 1; seed <= combinations; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Chance chance(seed);
    const History history = randomHistory(chance);
    askedZone = chance.oneOf(zones);
    std::vector<std::string> documents;
    for (std::int64_t count = chance.between(1, 3); count >= 0; --count) {
      const Phone phone{.offset = 60 * chance.oneOf(offsets),
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
         rows(mixed, "SELECT COUNT(DISTINCT unit) FROM records GROUP BY type", 1)) {
      ASSERT_EQ(units, "1");
    }
    if (HasFatalFailure()) return;
  }
}

}  // namespace
