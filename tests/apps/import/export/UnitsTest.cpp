#include "import/export/Units.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <ostream>
#include <string>

namespace {

struct ConversionCase {
  std::string name;
  std::string unit;
  Quantity quantity;
  std::optional<double> expected;
};

void PrintTo(const ConversionCase& value, std::ostream* out) { *out << value.name; }

class Converted : public testing::TestWithParam<ConversionCase> {};

TEST_P(Converted, IsInTheOtherUnit) {
  const std::optional<double> result = Units::converted(GetParam().quantity, GetParam().unit);

  ASSERT_EQ(result.has_value(), GetParam().expected.has_value());
  EXPECT_NEAR(result.value_or(0),
              GetParam().expected.value_or(0),
              1e-9 * std::abs(GetParam().expected.value_or(0)));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Converted,
    testing::Values(
        ConversionCase{"Kilometres", "km", {1.1, "km"}, 1.1},
        ConversionCase{"Metres", "km", {25, "m"}, 0.025},
        ConversionCase{"Miles", "km", {26.2, "mi"}, 42.1648128},
        ConversionCase{"Yards", "km", {1000, "yd"}, 0.9144},
        ConversionCase{"Feet", "km", {5280, "ft"}, 1.609344},
        ConversionCase{"Centimetres", "km", {150, "cm"}, 0.0015},
        ConversionCase{"Inches", "km", {100, "in"}, 0.00254},
        ConversionCase{"NoLength", "km", {1, "furlong"}, std::nullopt},
        ConversionCase{"NoUnit", "km", {1, ""}, std::nullopt},
        ConversionCase{"TooFar", "km", {1e308, "mi"}, std::nullopt},
        ConversionCase{"Climb", "m", {418, "cm"}, 4.18},
        ConversionCase{"ClimbInFeet", "m", {10, "ft"}, 3.048},
        ConversionCase{"Kilocalories", "kcal", {0.3, "kcal"}, 0.3},
        ConversionCase{"LargeCalories", "kcal", {250, "Cal"}, 250},
        ConversionCase{"SmallCalories", "kcal", {250, "cal"}, 0.25},
        ConversionCase{"Kilojoules", "kcal", {418.4, "kJ"}, 100},
        ConversionCase{"Pounds", "kg", {150, "lb"}, 68.0388555},
        ConversionCase{"Stone", "kg", {11, "st"}, 69.85322498},
        ConversionCase{"Ounces", "kg", {16, "oz"}, 0.45359237},
        ConversionCase{"Grams", "kg", {71200, "g"}, 71.2},
        ConversionCase{"Seconds", "min", {90, "s"}, 1.5},
        ConversionCase{"Hours", "min", {1.25, "hr"}, 75},
        ConversionCase{"Fahrenheit", "degC", {47.75, "degF"}, 8.75},
        ConversionCase{"Celsius", "degC", {-3, "degC"}, -3},
        ConversionCase{"Kelvin", "degC", {273.15, "K"}, 0},
        ConversionCase{"Beats", "count/min", {61.5, "count/min"}, 61.5},
        ConversionCase{"BeatsASecond", "count/min", {2, "count/s"}, 120},
        ConversionCase{"METs", "kcal/hr·kg", {4.5, "kcal/hr·kg"}, 4.5},
        ConversionCase{"METsTheOtherWay", "kcal/hr·kg", {4.5, "kcal/(kg·hr)"}, 4.5},
        ConversionCase{"Watts", "kcal/hr·kg", {200, "W"}, std::nullopt},
        ConversionCase{"MilesAnHour", "km/hr", {3, "mi/hr"}, 4.828032},
        ConversionCase{"MetresASecond", "km/hr", {1.5, "m/s"}, 5.4},
        ConversionCase{"FeetASecond", "m/s", {10, "ft/s"}, 3.048},
        ConversionCase{"FluidOunces", "mL", {8, "fl_oz_us"}, 236.5882365},
        ConversionCase{"ImperialOunces", "mL", {8, "fl_oz_imp"}, 227.3045},
        ConversionCase{"Cups", "mL", {1, "cup_us"}, 236.5882365},
        ConversionCase{"ImperialCups", "mL", {1, "cup_imp"}, 284.130625},
        ConversionCase{"Pints", "L", {1, "pt_us"}, 0.473176473},
        ConversionCase{"ImperialPints", "L", {1, "pt_imp"}, 0.56826125},
        ConversionCase{"PintsOfFluidOunces", "pt_us", {16, "fl_oz_us"}, 1},
        ConversionCase{"Milligrams", "mg", {1.25, "g"}, 1250},
        ConversionCase{"Micrograms", "mcg", {0.4, "mg"}, 400},
        ConversionCase{"OuncesOfANutrient", "g", {1, "oz"}, 28.349523125},
        ConversionCase{"Kilopascals", "mmHg", {16, "kPa"}, 120.00985213530501},
        ConversionCase{"WaterColumn", "mmHg", {10, "cmAq"}, 7.3555913527668},
        ConversionCase{"Milliseconds", "ms", {0.05, "s"}, 50},
        ConversionCase{"Glucose", "mg/dL", {5.5, "mmol<180.1558800000541>/L"}, 99.08573400002976},
        ConversionCase{
            "GlucoseBack", "mmol<180.1558800000541>/L", {180.1558800000541, "mg/dL"}, 10},
        ConversionCase{"AmountOfNothing", "mg/dL", {5, "mmol<0>/L"}, std::nullopt},
        ConversionCase{"AmountWithoutAMass", "mg/dL", {5, "mmol<>/L"}, std::nullopt},
        ConversionCase{"AmountCutShort", "mg/dL", {5, "mmol</L"}, std::nullopt},
        ConversionCase{"BackToFahrenheit", "degF", {38.5, "degC"}, 101.3},
        ConversionCase{"BackToKelvin", "K", {0, "degC"}, 273.15},
        ConversionCase{"SameUnknownUnit", "furlong", {3, "furlong"}, 3},
        ConversionCase{"OtherDimension", "kg", {3, "km"}, std::nullopt},
        ConversionCase{"TemperatureOfALength", "degC", {3, "km"}, std::nullopt}),
    [](const auto& test) { return test.param.name; });

TEST(Convertible, AreUnitsThatMeasureWhatAnotherMeasures) {
  for (const char* const unit : {"km", "degF", "mg/dL", "mmol<180.1558800000541>/L", "count/min"}) {
    EXPECT_TRUE(Units::isConvertible(unit)) << unit;
  }
  for (const char* const unit : {"count", "%", "", "dBASPL", "mmol/L", "mmol<"}) {
    EXPECT_FALSE(Units::isConvertible(unit)) << unit;
  }
}

TEST(RoundingIn, IsAShareOfTheNumberAndOfATemperaturesOtherZero) {
  EXPECT_DOUBLE_EQ(Units::roundingIn("km", -200), 0.002);
  EXPECT_DOUBLE_EQ(Units::roundingIn("km", 0), 0);
  EXPECT_DOUBLE_EQ(Units::roundingIn("degC", 0), 0.00018);
  EXPECT_DOUBLE_EQ(Units::roundingIn("degF", 68), 0.001);
}

TEST(Number, IsTheWholeTextAndFinite) {
  EXPECT_EQ(Units::number("61"), 61);
  EXPECT_EQ(Units::number("-0.25"), -0.25);
  EXPECT_EQ(Units::number("6.1e1"), 61);
  for (const char* const text : {"",
                                 " 61",
                                 "61 ",
                                 "61,5",
                                 "0x1p3",
                                 "1e999",
                                 "inf",
                                 "nan",
                                 "6.1.2",
                                 "HKCategoryValueSleepAnalysisInBed",
                                 "١"}) {
    EXPECT_EQ(Units::number(text), std::nullopt) << text;
  }
}

TEST(QuantityOf, SetsNumberAndUnitApart) {
  EXPECT_EQ(Units::quantity("4.5 kcal/hr·kg"), (Quantity{4.5, "kcal/hr·kg"}));
  EXPECT_EQ(Units::quantity("6900 %"), (Quantity{6900, "%"}));
  EXPECT_EQ(Units::quantity("6900%"), (Quantity{6900, "%"}));
  EXPECT_EQ(Units::quantity("418\u00A0\u202Fcm"), (Quantity{418, "cm"}));
  EXPECT_EQ(Units::quantity("418"), (Quantity{418, ""}));
  EXPECT_EQ(Units::quantity("cm"), std::nullopt);
  EXPECT_EQ(Units::quantity("inf cm"), std::nullopt);
}

}  // namespace
