// The records, days and dates of an export as the reader tells them.

#include "apps/import/CollectingSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr std::string_view start = " startDate=\"2024-03-01 08:00:00 +0100\" ";

TEST(ExportedRecords, AreToldAsExported) {
  const KeptRecord record = recordOf(
      "type=\"HKQuantityTypeIdentifierStepCount\" sourceName=\"Ann’s\u00A0Watch\""
      " sourceVersion=\"10.3\" device=\"&lt;&lt;HKDevice: 0x28&gt;, name:Watch, model:Watch&gt;\""
      " unit=\"count\" creationDate=\"2024-03-01 08:06:00 +0100\""
      " startDate=\"2024-03-01 08:00:00 +0100\" endDate=\"2024-03-01 08:05:00 +0100\""
      " value=\"61\"");

  EXPECT_EQ(record,
            (KeptRecord{.type = "StepCount",
                        .startDate = "2024-03-01 08:00:00 +0100",
                        .startDay = "2024-03-01",
                        .endDate = "2024-03-01 08:05:00 +0100",
                        .creationDate = "2024-03-01 08:06:00 +0100",
                        .sourceName = "Ann’s\u00A0Watch",
                        .device = "<<HKDevice: 0x28>, name:Watch, model:Watch>",
                        .unit = "count",
                        .value = "61",
                        .number = 61}));
}

TEST(ExportedRecords, MayHaveTheirAttributesInAnyOrder) {
  EXPECT_EQ(recordOf("value=\"61\" startDate=\"2024-03-01 08:00:00 +0100\" unit=\"count\""
                     " type=\"HKQuantityTypeIdentifierStepCount\""),
            recordOf("type=\"HKQuantityTypeIdentifierStepCount\" unit=\"count\""
                     " startDate=\"2024-03-01 08:00:00 +0100\" value=\"61\""));
}

TEST(ExportedRecords, MayLackEverythingButTypeAndStart) {
  const KeptRecord record =
      recordOf(std::string("type=\"HKCategoryTypeIdentifierMindfulSession\"").append(start));

  EXPECT_EQ(record,
            (KeptRecord{.type = "MindfulSession",
                        .startDate = "2024-03-01 08:00:00 +0100",
                        .startDay = "2024-03-01"}));
}

TEST(ExportedRecords, LoseThePrefixOfTheirTypeAndNothingElse) {
  const auto typeOf = [](const std::string& type) {
    return recordOf("type=\"" + type + "\"" + std::string(start)).type;
  };

  EXPECT_EQ(typeOf("HKQuantityTypeIdentifierHeartRate"), "HeartRate");
  EXPECT_EQ(typeOf("HKCategoryTypeIdentifierSleepAnalysis"), "SleepAnalysis");
  EXPECT_EQ(typeOf("HKDataTypeSleepDurationGoal"), "SleepDurationGoal");
  EXPECT_EQ(typeOf("com.example.Mood"), "com.example.Mood");
  EXPECT_EQ(typeOf("HKCorrelationTypeIdentifierFood"), "HKCorrelationTypeIdentifierFood");
}

TEST(ExportedRecords, HaveANumberOnlyWhenTheWholeValueIsOne) {
  const auto numberOf = [](const std::string& value) {
    return recordOf("type=\"a\" value=\"" + value + "\"" + std::string(start)).number;
  };

  EXPECT_EQ(numberOf("0.97"), 0.97);
  EXPECT_EQ(numberOf("HKCategoryValueSleepAnalysisAsleepREM"), std::nullopt);
  EXPECT_EQ(numberOf("61 bpm"), std::nullopt);
  EXPECT_EQ(numberOf("nan"), std::nullopt);
}

struct UnitCase {
  std::string name;
  std::string type;
  std::string unit;
  std::string value;
  std::string storedUnit;
  double number;
  bool converted;
  bool unknownUnit;
};

void PrintTo(const UnitCase& value, std::ostream* out) { *out << value.name; }

class RecordUnits : public testing::TestWithParam<UnitCase> {};

TEST_P(RecordUnits, AreConvertedWhereWeStoreAnother) {
  const UnitCase& given = GetParam();

  const KeptRecord record =
      recordOf("type=\"HKQuantityTypeIdentifier" + given.type + "\" unit=\"" + given.unit +
               "\" value=\"" + given.value + "\"" + std::string(start));

  EXPECT_EQ(record.unit, given.storedUnit);
  ASSERT_TRUE(record.number);
  EXPECT_NEAR(*record.number, given.number, 1e-7 * given.number);
  EXPECT_EQ(record.value, given.value);
  EXPECT_EQ(record.converted, given.converted);
  EXPECT_EQ(record.unknownUnit, given.unknownUnit);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RecordUnits,
    testing::Values(
        UnitCase{"Kilometres", "DistanceWalkingRunning", "km", "0.5", "km", 0.5, false, false},
        UnitCase{"Miles", "DistanceCycling", "mi", "10", "km", 16.09344, true, false},
        UnitCase{"Swum", "DistanceSwimming", "m", "25", "km", 0.025, true, false},
        UnitCase{"UnknownLength", "DistanceSwimming", "laps", "4", "laps", 4, false, true},
        UnitCase{"LargeCalories", "ActiveEnergyBurned", "Cal", "3", "kcal", 3, true, false},
        UnitCase{"Kilojoules", "BasalEnergyBurned", "kJ", "4.184", "kcal", 1, true, false},
        UnitCase{"Pounds", "BodyMass", "lb", "100", "kg", 45.359237, true, false},
        UnitCase{"LeanMass", "LeanBodyMass", "lb", "100", "kg", 45.359237, true, false},
        UnitCase{"Height", "Height", "cm", "170", "cm", 170, false, false},
        UnitCase{"HeightInFeet", "Height", "ft", "5.5", "cm", 167.64, true, false},
        UnitCase{"Fever", "BodyTemperature", "degF", "101.3", "degC", 38.5, true, false},
        UnitCase{"Speed", "WalkingSpeed", "mi/hr", "3", "km/hr", 4.828032, true, false},
        UnitCase{"Step", "WalkingStepLength", "in", "28", "cm", 71.12, true, false},
        UnitCase{"Stairs", "StairAscentSpeed", "ft/s", "1", "m/s", 0.3048, true, false},
        UnitCase{"Water", "DietaryWater", "fl_oz_us", "8", "mL", 236.5882365, true, false},
        UnitCase{"Sodium", "DietarySodium", "g", "1.5", "mg", 1500, true, false},
        UnitCase{
            "Pressure", "BloodPressureSystolic", "kPa", "16", "mmHg", 120.0098521, true, false},
        UnitCase{"Glucose",
                 "BloodGlucose",
                 "mmol&lt;180.1558800000541&gt;/L",
                 "5.5",
                 "mg/dL",
                 99.085734,
                 true,
                 false},
        UnitCase{"Minutes", "AppleExerciseTime", "s", "90", "min", 1.5, true, false},
        UnitCase{"UnknownTemperature", "BodyTemperature", "°C", "38", "°C", 38, false, true},
        UnitCase{"TypeWithoutAUnitOfOurs", "StepCount", "dozen", "4", "dozen", 4, false, false}),
    [](const auto& test) { return test.param.name; });

TEST(ExportedRecords, WithoutAUnitAreOfAnUnknownOneWhereWeStoreAnother) {
  for (const char* const type : {"DistanceCycling", "ActiveEnergyBurned", "BodyMass"}) {
    const KeptRecord record = recordOf("type=\"HKQuantityTypeIdentifier" + std::string(type) +
                                       "\" value=\"5\"" + std::string(start));

    EXPECT_TRUE(record.unknownUnit) << type;
    EXPECT_FALSE(record.converted) << type;
    EXPECT_EQ(record.unit, std::nullopt) << type;
    EXPECT_EQ(record.number, 5) << type;
  }
}

TEST(ExportedRecords, WithoutANumberOrWithoutAUnitOfOursLackNoUnit) {
  EXPECT_FALSE(recordOf("type=\"BodyMass\" value=\"heavy\"" + std::string(start)).unknownUnit);
  EXPECT_FALSE(recordOf("type=\"BodyMass\"" + std::string(start)).unknownUnit);
  EXPECT_FALSE(recordOf("type=\"StepCount\" value=\"5\"" + std::string(start)).unknownUnit);
}

TEST(ExportedRecords, OfACorrelationAreNotToldASecondTime) {
  const CollectingSink sink = sinkOf(exportOf(
      "<Correlation type=\"HKCorrelationTypeIdentifierBloodPressure\" startDate=\"2024-03-01\">"
      "<MetadataEntry key=\"a\" value=\"b\"/>"
      "<Record type=\"HKQuantityTypeIdentifierBloodPressureSystolic\" startDate=\"2024-03-01\"/>"
      "</Correlation>"
      "<Record type=\"HKQuantityTypeIdentifierBloodPressureSystolic\" startDate=\"2024-03-01\"/>"));

  EXPECT_EQ(sink.records.size(), 1U);
  EXPECT_THAT(sink.others, UnorderedElementsAre(Pair("Correlation", 1)));
}

TEST(ExportedRecords, AreInTheZoneWhateverOffsetTheyWereExportedAt) {
  const CollectingSink sink =
      sinkOf(exportOf("<Record type=\"a\" startDate=\"2024-03-31 01:30:00 +0100\"/>"
                      "<Record type=\"a\" startDate=\"2024-03-31 03:30:00 +0200\"/>"
                      "<Record type=\"a\" startDate=\"2099-01-01 00:00:00 -0330\"/>"
                      "<Record type=\"a\" startDate=\"2099-01-01 00:00:00 -0330\"/>"));

  std::vector<std::pair<std::string, std::string>> found;
  for (const KeptRecord& record : sink.records) {
    found.emplace_back(record.startDate, record.startDay.value_or(""));
  }
  EXPECT_THAT(found,
              ElementsAre(Pair("2024-03-31 01:30:00 +0100", "2024-03-31"),
                          Pair("2024-03-31 03:30:00 +0200", "2024-03-31"),
                          Pair("2099-01-01 04:30:00 +0100", "2099-01-01"),
                          Pair("2099-01-01 04:30:00 +0100", "2099-01-01")));
}

TEST(ExportedElements, ThatCannotBeStoredAreToldWithReasonAndLine) {
  const CollectingSink sink = sinkOf(
      exportOf("<Record startDate=\"2024-03-01\" value=\"1\"/>\n"
               "<Record type=\"HKDataType\" startDate=\"2024-03-01\"/>\n"
               "<Record type=\"a\"\n value=\"1\"><MetadataEntry key=\"a\" value=\"b\"/></Record>\n"
               "<Record type=\"a\" startDate=\"\"/>\n"
               "<Record type=\"a\" startDate=\"yesterday morning\"/>\n"
               "<Record type=\"a\" startDate=\"2024-02-30 08:00:00 +0100\"/>\n"
               "<Workout workoutActivityType=\"b\"><WorkoutRoute/></Workout>\n"
               "<ActivitySummary activeEnergyBurned=\"1\"/>\n"
               "<ActivitySummary dateComponents=\"2024\"/>\n"
               "<Record type=\"a\" startDate=\"2024-03-01 08:00:00 +0100\"/>"));

  EXPECT_THAT(sink.skips,
              ElementsAre(Pair("no type", 3),
                          Pair("no type", 4),
                          Pair("no startDate", 5),
                          Pair("no startDate", 7),
                          Pair("startDate is no date", 8),
                          Pair("startDate is no date", 9),
                          Pair("no startDate", 10),
                          Pair("no dateComponents", 11),
                          Pair("dateComponents is no date", 12)));
  EXPECT_EQ(sink.records.size(), 1U);
  EXPECT_THAT(sink.others, IsEmpty());
}

TEST(ExportedElements, WithoutAPlaceAreToldByName) {
  const CollectingSink sink = sinkOf(exportOf(
      "<Me HKCharacteristicTypeIdentifierDateOfBirth=\"1980-01-01\"/>"
      "<Record type=\"a\" startDate=\"2024-03-01\"><MetadataEntry key=\"a\" value=\"b\"/>"
      "<HeartRateVariabilityMetadataList><InstantaneousBeatsPerMinute bpm=\"61\"/>"
      "<InstantaneousBeatsPerMinute bpm=\"62\"/></HeartRateVariabilityMetadataList></Record>"
      "<ClinicalRecord type=\"c\"/><ClinicalRecord type=\"d\"/>"
      "<Audiogram><SensitivityPoint/></Audiogram>"
      "<VisionPrescription><RightEye/></VisionPrescription>"
      "<StateOfMind><Record type=\"a\" startDate=\"2024-03-01\"/></StateOfMind>"));

  EXPECT_THAT(sink.others,
              UnorderedElementsAre(Pair("Me", 1),
                                   Pair("HeartRateVariabilityMetadataList", 1),
                                   Pair("ClinicalRecord", 2),
                                   Pair("Audiogram", 1),
                                   Pair("VisionPrescription", 1),
                                   Pair("StateOfMind", 1)));
  EXPECT_EQ(sink.records.size(), 1U);
}

TEST(ExportedDays, HaveTheFiguresThatTheExportHas) {
  const CollectingSink sink = sinkOf(
      exportOf("<ActivitySummary dateComponents=\"2024-03-01\" activeEnergyBurned=\"412.5\""
               " activeEnergyBurnedGoal=\"500\" activeEnergyBurnedUnit=\"Cal\" appleMoveTime=\"0\""
               " appleMoveTimeGoal=\"\" appleExerciseTime=\"31\" appleExerciseTimeGoal=\"30\""
               " appleStandHours=\"11\" appleStandHoursGoal=\"12\"/>"));

  ASSERT_EQ(sink.days.size(), 1U);
  const ExportedActivityDay& day = sink.days.front();
  EXPECT_EQ(day.date, "2024-03-01");
  EXPECT_EQ(day.activeEnergy, 412.5);
  EXPECT_EQ(day.activeEnergyGoal, 500);
  EXPECT_EQ(day.activeEnergyUnit, "kcal");
  EXPECT_EQ(day.moveTime, 0);
  EXPECT_EQ(day.moveTimeGoal, std::nullopt);
  EXPECT_EQ(day.exerciseTime, 31);
  EXPECT_EQ(day.exerciseTimeGoal, 30);
  EXPECT_EQ(day.standHours, 11);
  EXPECT_EQ(day.standHoursGoal, 12);
}

TEST(ExportedDays, HaveTheirEnergiesInKilocalories) {
  const CollectingSink sink =
      sinkOf(exportOf("<ActivitySummary dateComponents=\"2024-03-01\" activeEnergyBurned=\"418.4\""
                      " activeEnergyBurnedGoal=\"836.8\" activeEnergyBurnedUnit=\"kJ\"/>"
                      "<ActivitySummary dateComponents=\"2024-03-02\" activeEnergyBurned=\"3\""
                      " activeEnergyBurnedUnit=\"fire\"/>"));

  ASSERT_EQ(sink.days.size(), 2U);
  EXPECT_EQ(sink.days[0].activeEnergy, 100);
  EXPECT_EQ(sink.days[0].activeEnergyGoal, 200);
  EXPECT_EQ(sink.days[0].activeEnergyUnit, "kcal");
  EXPECT_TRUE(sink.days[0].converted);
  EXPECT_EQ(sink.days[1].activeEnergy, 3);
  EXPECT_EQ(sink.days[1].activeEnergyUnit, "fire");
  EXPECT_TRUE(sink.days[1].unknownUnit);
}

TEST(ExportedDays, KnowTheOlderNameOfMinutesOfMovement) {
  const CollectingSink sink =
      sinkOf(exportOf("<ActivitySummary dateComponents=\"2024-03-01\" appleMoveMinutes=\"25\""
                      " appleMoveMinutesGoal=\"30\"/>"));

  EXPECT_EQ(sink.days.at(0).moveTime, 25);
  EXPECT_EQ(sink.days.at(0).moveTimeGoal, 30);
}

TEST(ExportDate, IsTold) {
  EXPECT_EQ(sinkOf(exportOf("<ExportDate value=\"2024-03-02 09:00:00 +0100\"/>")).exportDate,
            "2024-03-02 09:00:00 +0100");
}

}  // namespace
