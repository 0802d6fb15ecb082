#include "platform/Locale.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <string>

namespace {

struct GroupingCase {
  std::string name;
  std::int64_t number;
  DigitGrouping grouping;
  std::string text;
};

class Grouped : public testing::TestWithParam<GroupingCase> {};

TEST_P(Grouped, WritesTheNumberWithItsDigitsGrouped) {
  EXPECT_EQ(grouped(GetParam().number, GetParam().grouping), GetParam().text);
}

const DigitGrouping byThrees;
const DigitGrouping german{.separator = ".", .sizes = "\3\3"};
const DigitGrouping indian{.separator = ",", .sizes = "\3\2"};
const DigitGrouping french{.separator = "\xE2\x80\xAF", .sizes = "\3"};
const DigitGrouping none{.separator = "", .sizes = ""};
const DigitGrouping once{.separator = ",", .sizes = {3, CHAR_MAX}};
const DigitGrouping never{.separator = ",", .sizes = {CHAR_MAX}};

INSTANTIATE_TEST_SUITE_P(
    Numbers, Grouped,
    testing::Values(GroupingCase{"Zero", 0, byThrees, "0"},
                    GroupingCase{"ThreeDigits", 999, byThrees, "999"},
                    GroupingCase{"FourDigits", 1000, byThrees, "1,000"},
                    GroupingCase{"SixDigits", 999999, byThrees, "999,999"},
                    GroupingCase{"SevenDigits", 1234567, byThrees, "1,234,567"},
                    GroupingCase{"ThreeDigitsBelowZero", -999, byThrees, "-999"},
                    GroupingCase{"FourDigitsBelowZero", -1000, byThrees, "-1,000"},
                    GroupingCase{"Largest", INT64_MAX, byThrees, "9,223,372,036,854,775,807"},
                    GroupingCase{"Smallest", INT64_MIN, byThrees, "-9,223,372,036,854,775,808"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Customs, Grouped,
    testing::Values(GroupingCase{"German", 1234567, german, "1.234.567"},
                    GroupingCase{"Indian", 1234567890, indian, "1,23,45,67,890"},
                    GroupingCase{"IndianBelowZero", -123456, indian, "-1,23,456"},
                    GroupingCase{"French",
                                 1234567,
                                 french,
                                 "1\xE2\x80\xAF"
                                 "234\xE2\x80\xAF"
                                 "567"},
                    GroupingCase{"None", 1234567, none, "1234567"},
                    GroupingCase{"OnceAndNoMore", 1234567, once, "1234,567"},
                    GroupingCase{
                        "OnceAndNoMoreBelowZero", INT64_MIN, once, "-9223372036854775,808"},
                    GroupingCase{"Never", 1234567, never, "1234567"}),
    [](const auto& test) { return test.param.name; });

struct WholeNumberCase {
  std::string name;
  double value;
  std::string text;
};

class GroupedWhole : public testing::TestWithParam<WholeNumberCase> {};

TEST_P(GroupedWhole, IsRoundedWithHalvesAwayFromZero) {
  EXPECT_EQ(groupedWhole(GetParam().value, byThrees), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, GroupedWhole,
    testing::Values(WholeNumberCase{"Zero", 0, "0"}, WholeNumberCase{"MinusZero", -0.0, "0"},
                    WholeNumberCase{"BelowAHalf", 0.49, "0"},
                    WholeNumberCase{"MinusBelowAHalf", -0.49, "0"},
                    WholeNumberCase{"AHalf", 0.5, "1"}, WholeNumberCase{"MinusAHalf", -0.5, "-1"},
                    WholeNumberCase{"AHalfAboveEven", 2.5, "3"},
                    WholeNumberCase{"GroupedByRounding", 999.5, "1,000"},
                    WholeNumberCase{"Thousands", 1234.5, "1,235"},
                    WholeNumberCase{"MinusThousands", -1234567.4, "-1,234,567"},
                    WholeNumberCase{
                        "LargestThatIsGrouped", 9223372036854774784.0, "9,223,372,036,854,774,784"},
                    WholeNumberCase{"FirstBeyond", 0x1p63, "9223372036854775808"},
                    WholeNumberCase{"FarBelowZero", -1e20, "-100000000000000000000"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    NotNumbers, GroupedWhole,
    testing::Values(
        WholeNumberCase{"Infinity", std::numeric_limits<double>::infinity(), "inf"},
        WholeNumberCase{"MinusInfinity", -std::numeric_limits<double>::infinity(), "-inf"},
        WholeNumberCase{"NotANumber", std::numeric_limits<double>::quiet_NaN(), "nan"},
        WholeNumberCase{"MinusNotANumber", -std::numeric_limits<double>::quiet_NaN(), "nan"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
