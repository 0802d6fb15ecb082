// Numbers at their limits, and what is none in a number's place.

#include "support/WellFormed.h"
#include "withstand/Columns.h"
#include "withstand/DamagedHousehold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <ostream>
#include <string>

namespace {

struct NumberCase {
  std::string name;
  std::string sql;        ///< the value of every record
  std::string steps;      ///< in the answer about their trend
  std::string heartRate;  ///< the same
  int samples;            ///< during the workout; infinite ones do not count
};

void PrintTo(const NumberCase& test, std::ostream* stream) { *stream << test.name; }

class OddNumber : public testing::TestWithParam<NumberCase> {};

TEST_P(OddNumber, IsCountedAsWhatItIs) {
  DamagedHousehold household;
  household.ann().run(change(numbersOfRecords(), GetParam().sql));

  const DamagedHousehold::Replies replies = household.asked();

  EXPECT_THAT(textOf(replies.at("get_trend steps")), testing::HasSubstr(GetParam().steps));
  EXPECT_THAT(textOf(replies.at("get_trend heart_rate")), testing::HasSubstr(GetParam().heartRate));
  const auto document = nlohmann::json::parse(textOf(replies.at("get_workout_heart_rate")));
  EXPECT_EQ(document.at("pagination").at("total_count"), GetParam().samples);
  EXPECT_EQ(document.at("samples").size(), static_cast<std::size_t>(GetParam().samples));
  EXPECT_EQ(document.at("excluded_candidate_count"), 4 - GetParam().samples);
}

/// A day of steps is at least none, and the sum of two numbers may be too large for one.
INSTANTIATE_TEST_SUITE_P(
    Values, OddNumber,
    testing::Values(
        NumberCase{"None", "NULL", "No data in this range.", "No data in this range.", 0},
        NumberCase{"Zero",
                   "0",
                   "Days with data: 20, mean 0, min 0, max 0\n",
                   "Days with data: 20, mean 0, min 0, max 0\n",
                   4},
        NumberCase{"Infinity", "9e999", "No data in this range.", "No data in this range.", 0},
        NumberCase{"BothInfinities",
                   "(rowid % 2 * 2 - 1) * 9e999",
                   "No data in this range.",
                   "No data in this range.",
                   0},
        NumberCase{"LargestNumber",
                   "1.7976931348623157e308",
                   "Days with data: 20, mean inf, min inf, max inf\n",
                   "Days with data: 20, mean inf, ",
                   4},
        NumberCase{"SmallestInteger",
                   "-9223372036854775807 - 1",
                   "Days with data: 20, mean 0, min 0, max 0\n",
                   "Days with data: 20, mean -9223372036854775808, "
                   "min -9223372036854775808, max -9223372036854775808\n",
                   4}),
    [](const auto& test) { return test.param.name; });

/// A number that is none says as little as one that is missing.
TEST(TextInANumericColumn, CountsAsMissing) {
  DamagedHousehold household;
  const auto answersAfter = [&household](const std::string& sql) {
    household.replaceAnn(looseFile());
    household.ann().run(sql);
    return household.asked();
  };
  const std::string some = "rowid % 3 = 0";
  for (const Place& place : {numbersOfRecords(), numbersOfWorkouts()}) {
    const DamagedHousehold::Replies missing = answersAfter(change(place, "NULL", some));
    for (const std::string value : {"'not a number'", "x'31'", "''"}) {
      EXPECT_EQ(answersAfter(change(place, value, some)), missing) << place.table << value;
    }
  }
}

}  // namespace
