#include "import/Units.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>

namespace {

using Conversion = std::optional<double> (*)(const Quantity&);

struct ConversionCase {
  std::string name;
  Conversion conversion;
  Quantity quantity;
  std::optional<double> expected;
};

void PrintTo(const ConversionCase& value, std::ostream* out) { *out << value.name; }

class Converted : public testing::TestWithParam<ConversionCase> {};

TEST_P(Converted, IsInTheUnitWeStore) {
  const std::optional<double> result = GetParam().conversion(GetParam().quantity);

  ASSERT_EQ(result.has_value(), GetParam().expected.has_value());
  EXPECT_DOUBLE_EQ(result.value_or(0), GetParam().expected.value_or(0));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Converted,
    testing::Values(ConversionCase{"Kilometres", Units::kilometres, {1.1, "km"}, 1.1},
                    ConversionCase{"Metres", Units::kilometres, {25, "m"}, 0.025},
                    ConversionCase{"Miles", Units::kilometres, {26.2, "mi"}, 42.1648128},
                    ConversionCase{"Yards", Units::kilometres, {1000, "yd"}, 0.9144},
                    ConversionCase{"Feet", Units::kilometres, {5280, "ft"}, 1.609344},
                    ConversionCase{"Centimetres", Units::kilometres, {150, "cm"}, 0.0015},
                    ConversionCase{"Inches", Units::kilometres, {100, "in"}, 0.00254},
                    ConversionCase{"NoLength", Units::kilometres, {1, "furlong"}, std::nullopt},
                    ConversionCase{"NoUnit", Units::kilometres, {1, ""}, std::nullopt},
                    ConversionCase{"TooFar", Units::kilometres, {1e308, "mi"}, std::nullopt},
                    ConversionCase{"Climb", Units::metres, {418, "cm"}, 4.18},
                    ConversionCase{"ClimbInFeet", Units::metres, {10, "ft"}, 3.048},
                    ConversionCase{"Kilocalories", Units::kilocalories, {0.3, "kcal"}, 0.3},
                    ConversionCase{"LargeCalories", Units::kilocalories, {250, "Cal"}, 250},
                    ConversionCase{"SmallCalories", Units::kilocalories, {250, "cal"}, 0.25},
                    ConversionCase{"Kilojoules", Units::kilocalories, {418.4, "kJ"}, 100},
                    ConversionCase{"Pounds", Units::kilograms, {150, "lb"}, 68.0388555},
                    ConversionCase{"Stone", Units::kilograms, {11, "st"}, 69.85322498},
                    ConversionCase{"Ounces", Units::kilograms, {16, "oz"}, 0.45359237},
                    ConversionCase{"Grams", Units::kilograms, {71200, "g"}, 71.2},
                    ConversionCase{"Seconds", Units::minutes, {90, "s"}, 1.5},
                    ConversionCase{"Hours", Units::minutes, {1.25, "hr"}, 75},
                    ConversionCase{"Fahrenheit", Units::celsius, {47.75, "degF"}, 8.75},
                    ConversionCase{"Celsius", Units::celsius, {-3, "degC"}, -3},
                    ConversionCase{"Kelvin", Units::celsius, {273.15, "K"}, 0},
                    ConversionCase{"Beats", Units::beatsPerMinute, {61.5, "count/min"}, 61.5},
                    ConversionCase{"BeatsASecond", Units::beatsPerMinute, {2, "count/s"}, 120},
                    ConversionCase{"METs", Units::mets, {4.5, "kcal/hr·kg"}, 4.5},
                    ConversionCase{"METsTheOtherWay", Units::mets, {4.5, "kcal/(kg·hr)"}, 4.5},
                    ConversionCase{"Watts", Units::mets, {200, "W"}, std::nullopt}),
    [](const auto& test) { return test.param.name; });

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
