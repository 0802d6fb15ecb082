// Rows that hold what no receiver would store.

#include "support/WellFormed.h"
#include "withstand/Columns.h"
#include "withstand/DamagedHousehold.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstddef>
#include <map>
#include <ostream>
#include <string>

namespace {

const std::string samplesTool = "get_workout_heart_rate";

/// Whether the answer says that it found nothing.
bool findsNothing(const std::string& question, const nlohmann::json& reply) {
  static const std::map<std::string, std::string> words{
      {"get_trend", "No data in this range."},
      {"get_day", "Nothing recorded on this day."},
      {"compare_periods", "A  2024-03-01 ~ 2024-03-17:no data (not zero)\n"},
      {"get_workouts text", "total_count=0"},
      {"get_workouts json", "\"total_count\":0"},
      {samplesTool, "\"total_count\":0"}};
  const std::string tool = question.starts_with("get_trend") ? "get_trend" : question;
  return textOf(reply).find(words.at(tool)) != std::string::npos;
}

struct ValueCase {
  std::string name;
  std::string sql;  ///< the value
  bool isNumber = false;
  bool differs = false;        ///< from row to row
  bool inLastRowOnly = false;  ///< of each table, else in every row
};

void PrintTo(const ValueCase& test, std::ostream* stream) { *stream << test.name; }

/// The questions whose answer may change. Rows that are alike in a column stay together.
Names mayChange(const ValueCase& test, const Place& place) {
  Names names = place.readers;
  if (test.differs || test.inLastRowOnly) {
    names.insert(place.grouping.begin(), place.grouping.end());
  }
  return names;
}

/// Fails the test unless each answer is the right one, as far as it can be known.
void expectRight(const ValueCase& test, const Place& place,
                 const DamagedHousehold::Replies& replies) {
  const Names allowed = mayChange(test, place);
  const bool readable = test.inLastRowOnly || (place.holdsNumbers && test.isNumber);
  for (const auto& [name, reply] : replies) {
    if (name == samplesTool && place.namesWorkouts) continue;
    EXPECT_TRUE(reply.contains("result")) << name << ": " << reply;
    if (!allowed.contains(name)) {
      EXPECT_TRUE(reply == DamagedHousehold::wholeReplies().at(name)) << name;
    }
    if (!readable && place.emptied.contains(name)) {
      EXPECT_TRUE(findsNothing(name, reply)) << name << ": " << textOf(reply);
    }
  }
}

/// Sets the place's columns to the value, in the rows that the case says.
void put(const ValueCase& test, const Place& place, TestDatabase& database) {
  const std::string last = "rowid = (SELECT MAX(rowid) FROM " + place.table + ")";
  database.run(change(place, test.sql, test.inLastRowOnly ? last : "1"));
}

void expectAnswersInEveryColumn(const ValueCase& test) {
  DamagedHousehold household;
  for (const Place& place : places()) {
    SCOPED_TRACE(place.table + "." + place.columns.front());
    household.replaceAnn(looseFile());
    put(test, place, household.ann());

    const DamagedHousehold::Replies replies = household.asked();

    expectHonest(replies);
    expectRight(test, place, replies);
  }
}

void expectNoChangeWhereNobodyReads(const ValueCase& test) {
  DamagedHousehold household;
  household.replaceAnn(looseFile());
  std::size_t columns = 0;
  for (const std::string& table : tablesOf(household.ann())) {
    const Place unread = unreadOf(household.ann(), table);
    if (!unread.columns.empty()) put(test, unread, household.ann());
    columns += unread.columns.size();
  }

  EXPECT_EQ(household.asked(), DamagedHousehold::wholeReplies());
  EXPECT_GT(columns, 50U);
}

class OddValue : public testing::TestWithParam<ValueCase> {};

TEST_P(OddValue, IsAnsweredInEveryColumn) { expectAnswersInEveryColumn(GetParam()); }

TEST_P(OddValue, ChangesNothingWhereNobodyReads) { expectNoChangeWhereNobodyReads(GetParam()); }

INSTANTIATE_TEST_SUITE_P(
    Values, OddValue,
    testing::Values(
        ValueCase{.name = "Null", .sql = "NULL"},
        ValueCase{.name = "Text", .sql = "'not a number'"},
        ValueCase{.name = "Infinity", .sql = "9e999", .isNumber = true},
        ValueCase{.name = "BothInfinities",
                  .sql = "(rowid % 2 * 2 - 1) * 9e999",
                  .isNumber = true,
                  .differs = true},
        ValueCase{.name = "LargestNumber", .sql = "1.7976931348623157e308", .isNumber = true},
        ValueCase{.name = "SmallestInteger", .sql = "-9223372036854775807 - 1", .isNumber = true},
        ValueCase{.name = "InvalidUTF8", .sql = "CAST(x'41C328FFEDA080F5' AS TEXT)"},
        ValueCase{.name = "ZeroCharacter", .sql = "CAST(x'410042' AS TEXT)"},
        ValueCase{.name = "Blob", .sql = "x'00FF10'"}),
    [](const auto& test) { return test.param.name; });

const ValueCase megabyte{
    .name = "Megabyte", .sql = "printf('%.*c', 1000000, 'x')", .inLastRowOnly = true};

TEST(MegabyteOfText, IsAnsweredInEveryColumn) { expectAnswersInEveryColumn(megabyte); }

TEST(MegabyteOfText, ChangesNothingWhereNobodyReads) { expectNoChangeWhereNobodyReads(megabyte); }

}  // namespace
