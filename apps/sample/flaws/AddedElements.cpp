#include "sample/flaws/AddedElements.h"
#include "sample/export/Markup.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string_view>

namespace {

using Markup::appendAttribute;

constexpr int minute = 60;
constexpr std::string_view source = "Flaws";

/// One record; `from` and `to` are minutes after the first midnight.
struct AddedRecord {
  Flaw flaw;
  std::string_view type;  ///< full name
  std::string_view unit;  ///< "" when it has none
  std::optional<std::string_view> value;
  int from;
  int to;
  std::string_view source = ::source;
};

constexpr std::string_view glucose = "HKQuantityTypeIdentifierBloodGlucose";
constexpr std::string_view distance = "HKQuantityTypeIdentifierDistanceWalkingRunning";
constexpr std::string_view energy = "HKQuantityTypeIdentifierActiveEnergyBurned";
constexpr std::string_view weight = "HKQuantityTypeIdentifierBodyMass";
constexpr std::string_view height = "HKQuantityTypeIdentifierHeight";
constexpr std::string_view warmth = "HKQuantityTypeIdentifierBodyTemperature";
constexpr std::string_view oxygen = "HKQuantityTypeIdentifierOxygenSaturation";
constexpr std::string_view pulse = "HKQuantityTypeIdentifierHeartRate";
constexpr std::string_view sleep = "HKCategoryTypeIdentifierSleepAnalysis";
constexpr std::string_view mole = "mmol<180.1558800000541>/L";

// Every quantity appears in each of its units with the same amount. The first program has only one
// kind of sleep, the second has all of them.
constexpr std::array addedRecords{
    AddedRecord{Flaw::mixedUnits, weight, "kg", "70", 480, 480},
    AddedRecord{Flaw::mixedUnits, weight, "lb", "154.324", 481, 481},
    AddedRecord{Flaw::mixedUnits, weight, "st", "11.0231", 482, 482},
    AddedRecord{Flaw::mixedUnits, distance, "km", "1.60934", 490, 500},
    AddedRecord{Flaw::mixedUnits, distance, "mi", "1", 500, 510},
    AddedRecord{Flaw::mixedUnits, distance, "m", "1609.34", 510, 520},
    AddedRecord{Flaw::mixedUnits, energy, "kcal", "100", 520, 530},
    AddedRecord{Flaw::mixedUnits, energy, "Cal", "100", 530, 540},
    AddedRecord{Flaw::mixedUnits, energy, "kJ", "418.4", 540, 550},
    AddedRecord{Flaw::mixedUnits, height, "cm", "180", 550, 550},
    AddedRecord{Flaw::mixedUnits, height, "in", "70.8661", 551, 551},
    AddedRecord{Flaw::mixedUnits, warmth, "degC", "36.5", 552, 552},
    AddedRecord{Flaw::mixedUnits, warmth, "degF", "97.7", 553, 553},
    AddedRecord{Flaw::mixedUnits, glucose, "mg/dL", "90", 554, 554},
    AddedRecord{Flaw::mixedUnits, glucose, mole, "4.99567", 555, 555},
    AddedRecord{Flaw::mixedUnits, oxygen, "%", "0.97", 556, 556},

    AddedRecord{Flaw::bareNames, "HKDataTypeSleepDurationGoal", "hr", "8", 600, 600},
    AddedRecord{Flaw::bareNames, "HKDataTypeStateOfMind", "", std::nullopt, 601, 601},
    AddedRecord{Flaw::bareNames, "AppleSleepingBreathingDisturbances", "count", "12", 602, 602},
    AddedRecord{
        Flaw::bareNames, "HKCategoryTypeIdentifierMindfulSession", "", std::nullopt, 603, 608},

    AddedRecord{Flaw::twoSleepPrograms, sleep, "", "HKCategoryValueSleepAnalysisInBed", 1360, 1860},
    AddedRecord{
        Flaw::twoSleepPrograms, sleep, "", "HKCategoryValueSleepAnalysisAsleep", 1380, 1850},
    AddedRecord{Flaw::twoSleepPrograms,
                sleep,
                "",
                "HKCategoryValueSleepAnalysisAsleepUnspecified",
                1385,
                1400,
                "Flaws of another program"},
    AddedRecord{Flaw::twoSleepPrograms,
                sleep,
                "",
                "HKCategoryValueSleepAnalysisAsleepCore",
                1400,
                1600,
                "Flaws of another program"},
    AddedRecord{Flaw::twoSleepPrograms,
                sleep,
                "",
                "HKCategoryValueSleepAnalysisAsleepDeep",
                1600,
                1700,
                "Flaws of another program"},
    AddedRecord{Flaw::twoSleepPrograms,
                sleep,
                "",
                "HKCategoryValueSleepAnalysisAwake",
                1700,
                1710,
                "Flaws of another program"},
    AddedRecord{Flaw::twoSleepPrograms,
                sleep,
                "",
                "HKCategoryValueSleepAnalysisAsleepREM",
                1710,
                1840,
                "Flaws of another program"},

    AddedRecord{Flaw::noNumbers, pulse, "count/min", "NaN", 700, 700},
    AddedRecord{Flaw::noNumbers, pulse, "count/min", "1e309", 701, 701},
    AddedRecord{Flaw::noNumbers, pulse, "count/min", "", 702, 702},
    AddedRecord{Flaw::noNumbers, pulse, "count/min", "72,5", 703, 703},
    AddedRecord{Flaw::noNumbers, pulse, "count/min", "-inf", 704, 704},
};

/// Writes the elements of one export.
class Writer {
public:
  Writer(Stamp midnight, CivilDay firstDay) : midnight(midnight), firstDay(firstDay) {}

  void records(Flaw flaw) {
    for (const AddedRecord& record : addedRecords) {
      if (record.flaw == flaw) add(record);
    }
  }

  void correlation();
  void workouts();
  void rings();
  void twelveHours();
  void others();

  std::string text;

private:
  void add(const AddedRecord& record);
  void beginWorkout(std::string_view activity, int from, int to);
  void statistics(std::string_view type, std::string_view sum, std::string_view unit, int from,
                  int to);
  Stamp at(int minutes) const { return midnight.after(std::int64_t{minute} * minutes); }
  void times(int from, int to) {
    appendAttribute(text, "creationDate", at(to));
    appendAttribute(text, "startDate", at(from));
    appendAttribute(text, "endDate", at(to));
  }

  Stamp midnight;
  CivilDay firstDay;
};

void Writer::add(const AddedRecord& record) {
  text += " <Record";
  appendAttribute(text, "type", record.type);
  appendAttribute(text, "sourceName", record.source);
  if (!record.unit.empty()) appendAttribute(text, "unit", record.unit);
  times(record.from, record.to);
  if (record.value) appendAttribute(text, "value", *record.value);
  text += "/>\n";
}

/// A blood pressure: its two records, and the correlation that contains both again.
void Writer::correlation() {
  constexpr int measured = 720;
  const std::size_t begin = text.size();
  add({Flaw::correlations,
       "HKQuantityTypeIdentifierBloodPressureSystolic",
       "mmHg",
       "118",
       measured,
       measured});
  add({Flaw::correlations,
       "HKQuantityTypeIdentifierBloodPressureDiastolic",
       "mmHg",
       "76",
       measured,
       measured});
  const std::string both = text.substr(begin);
  text += " <Correlation type=\"HKCorrelationTypeIdentifierBloodPressure\"";
  appendAttribute(text, "sourceName", source);
  times(measured, measured);
  text.append(">\n").append(both).append(" </Correlation>\n");
}

void Writer::beginWorkout(std::string_view activity, int from, int to) {
  text += " <Workout";
  appendAttribute(text, "workoutActivityType", activity);
  appendAttribute(text, "duration", std::to_string(to - from));
  appendAttribute(text, "durationUnit", "min");
  appendAttribute(text, "sourceName", source);
  times(from, to);
}

void Writer::statistics(std::string_view type, std::string_view sum, std::string_view unit,
                        int from, int to) {
  text += "  <WorkoutStatistics";
  appendAttribute(text, "type", type);
  appendAttribute(text, "startDate", at(from));
  appendAttribute(text, "endDate", at(to));
  appendAttribute(text, "sum", sum);
  appendAttribute(text, "unit", unit);
  text += "/>\n";
}

/// The same ride four times, with totals in attributes, in statistics, in both and in neither.
void Writer::workouts() {
  constexpr int length = 30;
  for (int form = 0; form < 4; ++form) {
    const int from = 780 + 2 * length * form;
    const int to = from + length;
    beginWorkout("HKWorkoutActivityTypeCycling", from, to);
    if (form == 0 || form == 2) {
      text +=
          " totalDistance=\"10.5\" totalDistanceUnit=\"km\""
          " totalEnergyBurned=\"240\" totalEnergyBurnedUnit=\"kcal\"";
    }
    text += ">\n";
    if (form == 1 || form == 2) {
      statistics("HKQuantityTypeIdentifierDistanceCycling", "10.5", "km", from, to);
      statistics(energy, "240", "kcal", from, to);
    }
    text += " </Workout>\n";
  }
}

void Writer::rings() {
  text += " <ActivitySummary";
  appendAttribute(text, "dateComponents", AppleFormat::dayText(firstDay));
  text +=
      " activeEnergyBurned=\"1255.2\" activeEnergyBurnedGoal=\"2092\""
      " activeEnergyBurnedUnit=\"kJ\" appleMoveMinutes=\"35\" appleMoveMinutesGoal=\"30\""
      " appleExerciseTime=\"20\" appleExerciseTimeGoal=\"30\" appleStandHours=\"9\""
      " appleStandHoursGoal=\"12\"/>\n";
}

/// A pulse in the afternoon and another in the night after it.
void Writer::twelveHours() {
  const std::string first = AppleFormat::dayText(firstDay);
  const std::string second = AppleFormat::dayText(AppleFormat::daysAfter(firstDay, 1));
  const std::string zone(StampText(midnight).text().substr(19));
  const auto record = [&](std::string_view type,
                          std::string_view rest,
                          const std::string& start,
                          const std::string& end) {
    text += " <Record";
    appendAttribute(text, "type", type);
    appendAttribute(text, "sourceName", source);
    text += rest;
    appendAttribute(text, "startDate", start + zone);
    appendAttribute(text, "endDate", end + zone);
    text += "/>\n";
  };
  record(pulse,
         " unit=\"count/min\" value=\"72\"",
         first + " 3:04:05\u202FPM",
         first + " 3:04:05\u202FPM");
  record(sleep,
         " value=\"HKCategoryValueSleepAnalysisAsleep\"",
         first + " 11:10:00\u202FPM",
         second + " 6:50:00\u202FAM");
}

void Writer::others() {
  text += " <Audiogram type=\"HKDataTypeIdentifierAudiogram\"";
  appendAttribute(text, "sourceName", source);
  times(1100, 1105);
  text +=
      ">\n  <SensitivityPoint frequencyValue=\"1000\" frequencyUnit=\"Hz\" leftEarValue=\"10\""
      " leftEarUnit=\"dBHL\" rightEarValue=\"15\" rightEarUnit=\"dBHL\"/>\n </Audiogram>\n"
      " <VisionPrescription type=\"HKVisionPrescriptionTypeGlasses\"";
  appendAttribute(text, "dateIssued", at(1110));
  text +=
      ">\n  <RightEye sphere=\"-1.25\" sphereUnit=\"D\"/>\n  <LeftEye sphere=\"-1\""
      " sphereUnit=\"D\"/>\n </VisionPrescription>\n"
      " <ClinicalRecord type=\"HKClinicalTypeIdentifierAllergyRecord\" identifier=\"1\"";
  appendAttribute(text, "sourceName", source);
  appendAttribute(text, "receivedDate", at(1120));
  text +=
      " fhirVersion=\"4.0.1\" resourceFilePath=\"/clinical-records/AllergyIntolerance-1.json\"/>\n";
}

}  // namespace

std::string AddedElements::of(const FlawSet& flaws, Stamp midnight, CivilDay firstDay) {
  Writer writer(midnight, firstDay);
  for (const Flaw flaw : flaws) {
    writer.records(flaw);
    if (flaw == Flaw::correlations) writer.correlation();
    if (flaw == Flaw::workoutTotals) writer.workouts();
    if (flaw == Flaw::oldRings) writer.rings();
    if (flaw == Flaw::twelveHourStamps) writer.twelveHours();
    if (flaw == Flaw::otherElements) writer.others();
  }
  return writer.text;
}
