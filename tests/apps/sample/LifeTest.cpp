// What a household's databases must contain to be worth trying a server on.

#include "apps/sample/WrittenHousehold.h"
#include "workouts/Workouts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace {

/// Something that real data have, as a question with an answer above 0.
struct Shape {
  const char* name;
  const char* sql;
};

void expectShapes(const WrittenHousehold& household, const std::string& id,
                  const std::vector<Shape>& shapes) {
  for (const Shape& shape : shapes) {
    const std::vector<std::string> answer = household.texts(id, shape.sql);
    EXPECT_TRUE(answer.size() == 1 && std::stod(answer[0]) > 0) << shape.name;
  }
}

Options natural() {
  return {.out = {}, .members = 3, .years = 1, .records = {}, .seed = 1, .today = {}};
}

const std::vector<Shape> shapesOfAnn{
    {"forty types", "SELECT COUNT(DISTINCT type) >= 40 FROM records"},
    {"a natural volume", "SELECT COUNT(*) BETWEEN 80000 AND 300000 FROM records"},
    {"heart rate is the bulk",
     "SELECT COUNT(*) FILTER (WHERE type = 'HeartRate') * 3 > COUNT(*) FROM records"},
    {"the watch's name has a curly quote and a no-break space",
     "SELECT COUNT(*) FROM records WHERE source_name ="
     " 'Ann' || char(0x2019) || 's Apple' || char(0xA0) || 'Watch'"},
    {"watch and phone count the same days' steps",
     "SELECT COUNT(*) FROM (SELECT start_day FROM records WHERE type = 'StepCount'"
     " GROUP BY start_day HAVING COUNT(DISTINCT source_name) = 2)"},
    {"distances overlap",
     "SELECT COUNT(DISTINCT source_name) = 2 FROM records WHERE type = 'DistanceWalkingRunning'"},
    {"energies overlap",
     "SELECT COUNT(DISTINCT source_name) = 2 FROM records WHERE type = 'ActiveEnergyBurned'"},
    {"every sleep stage of a watch, and the time in bed",
     "SELECT COUNT(DISTINCT value) = 5 FROM records WHERE type = 'SleepAnalysis' AND value IN"
     " ('HKCategoryValueSleepAnalysisInBed', 'HKCategoryValueSleepAnalysisAwake',"
     " 'HKCategoryValueSleepAnalysisAsleepCore', 'HKCategoryValueSleepAnalysisAsleepDeep',"
     " 'HKCategoryValueSleepAnalysisAsleepREM')"},
    {"sleep from one source alone",
     "SELECT COUNT(DISTINCT source_name) = 1 FROM records WHERE type = 'SleepAnalysis'"},
    {"nights of a believable length",
     "SELECT MAX(minutes) < 660 FROM (SELECT SUM(unixepoch(substr(end_date, 1, 19))"
     " - unixepoch(substr(start_date, 1, 19))) / 60 AS minutes FROM records"
     " WHERE type = 'SleepAnalysis' AND value LIKE '%Asleep%'"
     " GROUP BY date(substr(start_date, 1, 19), '-12 hours'))"},
    {"oxygen as a fraction",
     "SELECT MIN(value_num > 0.9 AND value_num <= 1 AND unit = '%') FROM records"
     " WHERE type = 'OxygenSaturation'"},
    {"body fat as a fraction",
     "SELECT MIN(value_num < 0.4 AND unit = '%') FROM records WHERE type = 'BodyFatPercentage'"},
    {"the other body and heart metrics",
     "SELECT COUNT(DISTINCT type || unit) = 5 FROM records WHERE type || ' ' || unit IN"
     " ('VO2Max mL/min·kg', 'BodyMass kg', 'HeartRateVariabilitySDNN ms',"
     " 'RestingHeartRate count/min', 'RespiratoryRate count/min')"},
    {"a metric without a unit",
     "SELECT COUNT(*) FROM records WHERE type = 'BodyMassIndex' AND unit IS NULL"},
    {"minutes, flights and basal energy",
     "SELECT COUNT(DISTINCT type) = 4 FROM records WHERE type IN"
     " ('AppleExerciseTime', 'AppleStandTime', 'FlightsClimbed', 'BasalEnergyBurned')"},
    {"rarer types that add up",
     "SELECT COUNT(DISTINCT type) >= 8 FROM records WHERE type IN"
     " ('TimeInDaylight', 'DistanceCycling', 'DistanceSwimming', 'DistanceWheelchair',"
     " 'DistanceDownhillSnowSports', 'SwimmingStrokeCount', 'PushCount', 'NikeFuel',"
     " 'AppleMoveTime', 'DietaryWater', 'DietaryEnergyConsumed', 'NumberOfTimesFallen')"},
    {"energy in two units",
     "SELECT COUNT(DISTINCT unit) = 2 FROM records WHERE type = 'DietaryEnergyConsumed'"},
    {"heart rate in two units and in none",
     "SELECT COUNT(DISTINCT unit) = 2 AND COUNT(*) > COUNT(unit) FROM records"
     " WHERE type = 'HeartRate'"},
    {"records without a day", "SELECT COUNT(*) FROM records WHERE start_day IS NULL"},
    {"offsets of home and of a journey over the end of summer time",
     "SELECT COUNT(DISTINCT substr(start_date, 21)) = 3 FROM records"
     " WHERE substr(start_date, 21) IN ('+0800', '-0400', '-0500')"},
    {"the text of a number is its number",
     "SELECT MIN(CAST(value AS REAL) = value_num) FROM records WHERE value_num IS NOT NULL"},
    {"days are those of the stamps",
     "SELECT MIN(start_day = substr(start_date, 1, 10)) FROM records WHERE start_day IS NOT NULL"},
    {"statistics of types",
     "SELECT (SELECT SUM(n) FROM stat_types) = (SELECT COUNT(*) FROM records)"
     " AND (SELECT COUNT(*) FROM stat_types) = (SELECT COUNT(DISTINCT type) FROM records)"},
    {"statistics of sources",
     "SELECT MIN(n = (SELECT COUNT(*) FROM records r WHERE r.source_name = s.source_name)"
     " AND last = (SELECT MAX(start_date) FROM records r WHERE r.source_name = s.source_name))"
     " FROM stat_sources s"},
    {"the mark of complete statistics",
     "SELECT COUNT(*) FROM stat_meta WHERE k = 'built' AND v = '1'"},
    {"indoor, outdoor and unrecorded workouts",
     "SELECT COUNT(DISTINCT ifnull(indoor, -1)) = 3 FROM workouts"},
    {"a workout with everything",
     "SELECT COUNT(*) FROM workouts WHERE distance_km + active_energy_kcal + basal_energy_kcal"
     " + hr_avg + hr_min + hr_max + elevation_m + avg_mets + indoor + temp_c + humidity_pct"
     " IS NOT NULL"},
    {"a workout with nothing but its length",
     "SELECT COUNT(*) FROM workouts WHERE coalesce(distance_km, active_energy_kcal, hr_avg,"
     " elevation_m, avg_mets, indoor, temp_c, basal_energy_kcal) IS NULL"},
    {"activities with and without a Chinese name",
     "SELECT COUNT(DISTINCT activity_type) = 4 FROM workouts"
     " WHERE activity_type IN ('Running', 'Yoga', 'Pickleball', 'Barre')"},
    {"workouts of two sources overlap",
     "SELECT COUNT(*) FROM workouts a JOIN workouts b ON a.source_name < b.source_name"
     " AND a.start_day = b.start_day AND a.start_date < b.end_date AND b.start_date < a.end_date"},
    {"dense heart rate from the watch and sparser from the strap in one workout",
     "SELECT COUNT(*) FROM workouts w WHERE source_name LIKE 'Ann%' AND"
     " (SELECT COUNT(*) FROM records r WHERE r.type = 'HeartRate' AND r.start_day = w.start_day"
     " AND r.source_name = w.source_name AND r.start_date BETWEEN w.start_date AND w.end_date)"
     " > 2 * (SELECT COUNT(*) FROM records r WHERE r.type = 'HeartRate' AND"
     " r.start_day = w.start_day AND r.source_name = 'Chest Strap'"
     " AND r.start_date BETWEEN w.start_date AND w.end_date) AND (SELECT COUNT(*) FROM records r"
     " WHERE r.start_day = w.start_day AND r.source_name = 'Chest Strap') > 0"},
    {"a pause of more than a minute in a workout's heart rate",
     "SELECT COUNT(*) FROM (SELECT w.rowid, unixepoch(substr(r.start_date, 1, 19)) -"
     " lag(unixepoch(substr(r.start_date, 1, 19))) OVER (PARTITION BY w.rowid"
     " ORDER BY r.start_date) AS gap FROM workouts w JOIN records r ON r.type = 'HeartRate'"
     " AND r.start_day = w.start_day AND r.source_name = w.source_name"
     " AND r.start_date BETWEEN w.start_date AND w.end_date) WHERE gap > 60"},
};

TEST(SampleLife, GivesAnnWhatAWatchAndAPhoneLeaveBehind) {
  expectShapes(WrittenHousehold(natural()), "ann-01", shapesOfAnn);
}

TEST(SampleLife, GivesAnnsWorkoutsEveryStatusOfHumidity) {
  WrittenHousehold household(natural());
  std::set<std::string> statuses;
  bool unread = false;
  bool column = false;
  std::size_t readings = 0;

  Database database(household.database("ann-01"), {});
  database
      .prepare(
          "SELECT activity_type, source_name, start_date, end_date, humidity_pct FROM workouts")
      .readAll([&](const Row& row) {
        WorkoutEntry entry;
        entry.activity_type = row.text(0);
        entry.source = row.text(1);
        entry.start = row.text(2);
        entry.end = row.text(3);
        entry.humidity_pct = row.find<double>(4);
        const auto data = household.texts(
            "ann-01",
            "SELECT data FROM workout_humidity WHERE workout_id = '" + entry.workout_id() + "'");
        readings += data.size();
        if (!data.empty()) {
          entry.humidity = nlohmann::json::parse(data[0]).get<WorkoutHumidity>();
        } else if (entry.humidity_pct) {
          column = true;
        }
        const auto reading = entry.humidityReading();
        unread |= !reading;
        if (reading) statuses.insert(std::string(reading->status()));
        return 0;
      });

  EXPECT_THAT(statuses,
              testing::ElementsAre("invalid_value",
                                   "legacy_unverified",
                                   "out_of_range",
                                   "unrecognized_representation",
                                   "unverified_scale",
                                   "valid"));
  EXPECT_TRUE(unread) << "no workout without humidity";
  EXPECT_TRUE(column) << "no workout with the old column alone";
  EXPECT_EQ(household.texts("ann-01", "SELECT COUNT(*) FROM workout_humidity"),
            std::vector{std::to_string(readings)})
      << "a reading that belongs to no workout";
}

const std::vector<Shape> shapesOfBen{
    {"one phone with a curly quote",
     "SELECT COUNT(*) FROM records WHERE source_name = 'Ben' || char(0x2019) || 's iPhone'"},
    {"no watch", "SELECT COUNT(*) = 0 FROM records WHERE source_name LIKE '%Watch%'"},
    {"winter and summer time at home",
     "SELECT COUNT(DISTINCT substr(start_date, 21)) = 2 FROM records"},
    {"no record from the future",
     "SELECT COUNT(*) = 0 FROM records WHERE start_day > '2026-11-20'"},
    {"statistics that were never built",
     "SELECT (SELECT COUNT(*) FROM stat_types) + (SELECT COUNT(*) FROM stat_sources)"
     " + (SELECT COUNT(*) FROM stat_meta) = 0"},
    {"bare workouts", "SELECT COUNT(*) FROM workouts WHERE hr_avg IS NULL"},
};

const std::vector<Shape> shapesOfClara{
    {"every sleep stage",
     "SELECT COUNT(DISTINCT value) = 6 FROM records WHERE type = 'SleepAnalysis' AND value IN"
     " ('HKCategoryValueSleepAnalysisInBed', 'HKCategoryValueSleepAnalysisAwake',"
     " 'HKCategoryValueSleepAnalysisAsleepCore', 'HKCategoryValueSleepAnalysisAsleepDeep',"
     " 'HKCategoryValueSleepAnalysisAsleepREM', 'HKCategoryValueSleepAnalysisAsleepUnspecified')"},
    {"sleep from two sources overlaps",
     "SELECT COUNT(*) FROM records a JOIN records b ON b.type = a.type"
     " AND b.start_day = a.start_day AND b.source_name <> a.source_name"
     " WHERE a.type = 'SleepAnalysis' AND a.value LIKE '%AsleepUnspecified'"
     " AND b.value LIKE '%AsleepCore' AND b.start_date BETWEEN a.start_date AND a.end_date"},
};

const std::vector<Shape> shapesOfDavid{
    {"a record from the future", "SELECT COUNT(*) FROM records WHERE start_day > '2026-11-20'"},
};

TEST(SampleLife, GivesBenWhatAPhoneAloneLeavesBehind) {
  Options options = natural();
  options.records = 1000;  // Ann is not the subject
  expectShapes(WrittenHousehold(options), "ben-02", shapesOfBen);
}

TEST(SampleLife, GivesLaterMembersWhatTheFirstTwoAreSpared) {
  Options options = natural();
  options.records = 1000;
  options.members = 5;
  const WrittenHousehold household(options);

  expectShapes(household, "clara-04", shapesOfClara);
  expectShapes(household, "david-05", shapesOfDavid);
}

}  // namespace
