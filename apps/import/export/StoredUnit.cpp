#include "import/export/StoredUnit.h"

#include <algorithm>
#include <array>

namespace {

struct TypeUnit {
  std::string_view type;
  std::string_view unit;
};

/// Ascending by type.
constexpr std::array units{
    TypeUnit{"AppleExerciseTime", "min"},
    TypeUnit{"AppleMoveTime", "min"},
    TypeUnit{"AppleSleepingWristTemperature", "degC"},
    TypeUnit{"AppleStandTime", "min"},
    TypeUnit{"BasalBodyTemperature", "degC"},
    TypeUnit{"BloodGlucose", "mg/dL"},
    TypeUnit{"BloodPressureDiastolic", "mmHg"},
    TypeUnit{"BloodPressureSystolic", "mmHg"},
    TypeUnit{"BodyMass", "kg"},
    TypeUnit{"BodyTemperature", "degC"},
    TypeUnit{"CrossCountrySkiingSpeed", "km/hr"},
    TypeUnit{"CyclingCadence", "count/min"},
    TypeUnit{"CyclingSpeed", "km/hr"},
    TypeUnit{"DietaryBiotin", "mcg"},
    TypeUnit{"DietaryCaffeine", "mg"},
    TypeUnit{"DietaryCalcium", "mg"},
    TypeUnit{"DietaryCarbohydrates", "g"},
    TypeUnit{"DietaryChloride", "mg"},
    TypeUnit{"DietaryCholesterol", "mg"},
    TypeUnit{"DietaryChromium", "mcg"},
    TypeUnit{"DietaryCopper", "mg"},
    TypeUnit{"DietaryEnergyConsumed", "kcal"},
    TypeUnit{"DietaryFatMonounsaturated", "g"},
    TypeUnit{"DietaryFatPolyunsaturated", "g"},
    TypeUnit{"DietaryFatSaturated", "g"},
    TypeUnit{"DietaryFatTotal", "g"},
    TypeUnit{"DietaryFiber", "g"},
    TypeUnit{"DietaryFolate", "mcg"},
    TypeUnit{"DietaryIodine", "mcg"},
    TypeUnit{"DietaryIron", "mg"},
    TypeUnit{"DietaryMagnesium", "mg"},
    TypeUnit{"DietaryManganese", "mg"},
    TypeUnit{"DietaryMolybdenum", "mcg"},
    TypeUnit{"DietaryNiacin", "mg"},
    TypeUnit{"DietaryPantothenicAcid", "mg"},
    TypeUnit{"DietaryPhosphorus", "mg"},
    TypeUnit{"DietaryPotassium", "mg"},
    TypeUnit{"DietaryProtein", "g"},
    TypeUnit{"DietaryRiboflavin", "mg"},
    TypeUnit{"DietarySelenium", "mcg"},
    TypeUnit{"DietarySodium", "mg"},
    TypeUnit{"DietarySugar", "g"},
    TypeUnit{"DietaryThiamin", "mg"},
    TypeUnit{"DietaryVitaminA", "mcg"},
    TypeUnit{"DietaryVitaminB12", "mcg"},
    TypeUnit{"DietaryVitaminB6", "mg"},
    TypeUnit{"DietaryVitaminC", "mg"},
    TypeUnit{"DietaryVitaminD", "mcg"},
    TypeUnit{"DietaryVitaminE", "mg"},
    TypeUnit{"DietaryVitaminK", "mcg"},
    TypeUnit{"DietaryWater", "mL"},
    TypeUnit{"DietaryZinc", "mg"},
    TypeUnit{"ForcedExpiratoryVolume1", "L"},
    TypeUnit{"ForcedVitalCapacity", "L"},
    TypeUnit{"HeartRate", "count/min"},
    TypeUnit{"HeartRateRecoveryOneMinute", "count/min"},
    TypeUnit{"HeartRateVariabilitySDNN", "ms"},
    TypeUnit{"Height", "cm"},
    TypeUnit{"LeanBodyMass", "kg"},
    TypeUnit{"PaddleSportsSpeed", "km/hr"},
    TypeUnit{"PhysicalEffort", "kcal/hr·kg"},
    TypeUnit{"RespiratoryRate", "count/min"},
    TypeUnit{"RestingHeartRate", "count/min"},
    TypeUnit{"RowingSpeed", "km/hr"},
    TypeUnit{"RunningGroundContactTime", "ms"},
    TypeUnit{"RunningSpeed", "km/hr"},
    TypeUnit{"RunningStrideLength", "m"},
    TypeUnit{"RunningVerticalOscillation", "cm"},
    TypeUnit{"SixMinuteWalkTestDistance", "m"},
    TypeUnit{"StairAscentSpeed", "m/s"},
    TypeUnit{"StairDescentSpeed", "m/s"},
    TypeUnit{"TimeInDaylight", "min"},
    TypeUnit{"UnderwaterDepth", "m"},
    TypeUnit{"WaistCircumference", "cm"},
    TypeUnit{"WalkingHeartRateAverage", "count/min"},
    TypeUnit{"WalkingSpeed", "km/hr"},
    TypeUnit{"WalkingStepLength", "cm"},
    TypeUnit{"WaterTemperature", "degC"},
};
static_assert(std::ranges::is_sorted(units, {}, &TypeUnit::type));

}  // namespace

std::optional<std::string_view> StoredUnit::of(std::string_view type) {
  if (type.starts_with("Distance")) return "km";
  if (type.ends_with("EnergyBurned")) return "kcal";
  const auto found = std::ranges::lower_bound(units, type, {}, &TypeUnit::type);
  if (found == units.end() || found->type != type) return std::nullopt;
  return found->unit;
}
