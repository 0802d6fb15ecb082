#include "sample/export/ExportUnits.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace {

using ExportUnits::Quantity;
using ExportUnits::worded;

struct UnitCase {
  std::string name;
  std::string_view type;
  Decimal value;
  std::string_view unit;
  Quantity imperial;
};

void PrintTo(const UnitCase& value, std::ostream* out) { *out << value.name; }

class ExportedUnit : public testing::TestWithParam<UnitCase> {};

TEST_P(ExportedUnit, IsThatOfThePhonesSystem) {
  const auto& [name, type, value, unit, imperial] = GetParam();

  EXPECT_EQ(worded(UnitSystem::metric, type, value, unit), (Quantity{value.text(), unit}));
  EXPECT_EQ(worded(UnitSystem::imperial, type, value, unit), imperial);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ExportedUnit,
    testing::Values(
        UnitCase{"Distance", "DistanceCycling", {1609344, 6}, "km", {"1", "mi"}},
        UnitCase{"Swum", "DistanceSwimming", {850, 0}, "m", {"929.571", "yd"}},
        UnitCase{"SwumInKilometres", "DistanceSwimming", {85, 2}, "km", {"929.571", "yd"}},
        UnitCase{"Skied", "DistanceDownhillSnowSports", {6400, 0}, "m", {"3.97678", "mi"}},
        UnitCase{"ClinicalWalk", "SixMinuteWalkTestDistance", {540, 0}, "m", {"540", "m"}},
        UnitCase{"StepLength", "WalkingStepLength", {69, 0}, "cm", {"27.1654", "in"}},
        UnitCase{"Speed", "WalkingSpeed", {47, 1}, "km/hr", {"2.92044", "mi/hr"}},
        UnitCase{"Climb", "StairAscentSpeed", {42, 2}, "m/s", {"1.37795", "ft/s"}},
        UnitCase{"Weight", "BodyMass", {675, 1}, "kg", {"148.812", "lb"}},
        UnitCase{"Energy", "ActiveEnergyBurned", {12345, 3}, "kcal", {"12.345", "Cal"}},
        UnitCase{"Kilojoules", "DietaryEnergyConsumed", {4184, 0}, "kJ", {"1000", "Cal"}},
        UnitCase{"Water", "DietaryWater", {260, 0}, "mL", {"8.79165", "fl_oz_us"}},
        UnitCase{"Warmth", "AppleSleepingWristTemperature", {354, 1}, "degC", {"95.72", "degF"}},
        UnitCase{"Frost", "", {-20, 0}, "degC", {"-4", "degF"}},
        UnitCase{"NothingOnEitherScale", "", {0, 0}, "km", {"0", "mi"}},
        UnitCase{"SixDigitsOfALargeNumber", "", {1234567, 3}, "kcal", {"1234.57", "Cal"}},
        UnitCase{"NoExponentOfASmallNumber", "", {1, 5}, "km", {"0.00000621371", "mi"}},
        UnitCase{"NoExponentOfAHugeNumber", "", {123456789, 1}, "kcal", {"12345679", "Cal"}},
        UnitCase{"RoundedUpToAnotherDigit", "", {999999999, 6}, "kcal", {"1000", "Cal"}},
        UnitCase{"Percent", "OxygenSaturation", {97, 2}, "%", {"0.97", "%"}},
        UnitCase{"Beats", "HeartRate", {72, 0}, "count/min", {"72", "count/min"}},
        UnitCase{"Uptake", "VO2Max", {3451234, 5}, "mL/min·kg", {"34.51234", "mL/min·kg"}},
        UnitCase{"Effort", "PhysicalEffort", {24, 1}, "kcal/hr·kg", {"2.4", "kcal/hr·kg"}},
        UnitCase{"Unitless", "BodyMassIndex", {239, 1}, "", {"23.9", ""}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
