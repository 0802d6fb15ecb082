#include "platform/JsonFields.h"
#include "summary/SummaryModel.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

SummaryCoverage fullCoverage() {
  SummaryCoverage coverage;
  coverage.firstDay = "2016-01-02";
  coverage.lastDay = "2024-03-01";
  coverage.records = 1234567;
  coverage.typeCount = 42;
  coverage.devices = {"Ann's Watch", "Ann's iPhone"};
  coverage.collected = {"Steps"};
  coverage.absentExpected = {"Body"};
  coverage.suspicious = {"Sleep", "Heart rate"};
  coverage.backfilling = true;
  coverage.completeFrom = "2023-05-02";
  coverage.backfillFrontier = "2023-05-01";
  coverage.yearly = {{"2024", 2}, {"2023", 1234565}};
  coverage.lastSyncAt = 1709247272.25;
  return coverage;
}

constexpr const char* fullCoverageText =
    R"({"firstDay":"2016-01-02","lastDay":"2024-03-01","records":1234567,"typeCount":42,)"
    R"("devices":["Ann's Watch","Ann's iPhone"],"collected":["Steps"],"absentExpected":["Body"],)"
    R"("suspicious":["Sleep","Heart rate"],"backfilling":true,"completeFrom":"2023-05-02",)"
    R"("backfillFrontier":"2023-05-01","yearly":{"2023":1234565,"2024":2},)"
    R"("lastSyncAt":1709247272.25})";

constexpr const char* emptyCoverageText =
    R"({"firstDay":"","lastDay":"","records":0,"typeCount":0,"devices":[],"collected":[],)"
    R"("absentExpected":[],"suspicious":[],"backfilling":false,"completeFrom":"",)"
    R"("backfillFrontier":"","yearly":{}})";

Metric fullMetric() {
  Metric metric;
  metric.label = "Daily steps · last 30 days";
  metric.value = 8123.5;
  metric.unit = " bpm";
  metric.samples = 28;
  metric.text = "8,124";
  return metric;
}

constexpr const char* fullMetricText =
    R"({"label":"Daily steps · last 30 days","value":8123.5,"unit":" bpm","samples":28,)"
    R"("text":"8,124","state":"present"})";

SummaryCard fullCard() {
  SummaryCard card;
  card.key = "heart";
  card.title = "心率";
  card.state = DataState::absentExpected;
  card.metrics = {fullMetric()};
  card.needsDevice = "未采集(未检测到 Apple Watch)";
  return card;
}

HealthSummary fullSummary() {
  HealthSummary summary;
  summary.personID = "ann-01";
  summary.person = "Ann";
  summary.generatedAt = 1709300000.5;
  summary.coverage = fullCoverage();
  summary.cards = {fullCard()};
  summary.insights = {{"weekday", "Your most active day is Monday."}};
  return summary;
}

/// `value` written and read again.
template <typename Record>
Record again(const Record& value) {
  return json::parse(ordered_json(value).dump()).get<Record>();
}

/// The message with which `value` fails to be a `Record`; "" when it is one.
template <typename Record>
std::string messageFor(const json& value) {
  try {
    value.get<Record>();
  } catch (const DecodingError& error) {
    return error.what();
  }
  return "";
}

struct StateCase {
  DataState state;
  std::string name;
};

class StateName : public testing::TestWithParam<StateCase> {};

TEST_P(StateName, IsWrittenAndReadBack) {
  Metric metric;
  metric.state = GetParam().state;

  EXPECT_EQ(rawValue(GetParam().state), GetParam().name);
  EXPECT_EQ(ordered_json(metric)["state"], GetParam().name);
  EXPECT_EQ(again(metric).state, GetParam().state);
}

INSTANTIATE_TEST_SUITE_P(States, StateName,
                         testing::Values(StateCase{DataState::present, "present"},
                                         StateCase{DataState::absentExpected, "absent_expected"},
                                         StateCase{DataState::absentSuspicious,
                                                   "absent_suspicious"},
                                         StateCase{DataState::backfilling, "backfilling"}),
                         [](const auto& test) { return test.param.name; });

TEST(CoverageEncoding, KeepsTheOrderOfTheFields) {
  EXPECT_EQ(ordered_json(fullCoverage()).dump(), fullCoverageText);
}

TEST(CoverageEncoding, OfNoDataHasEveryFieldButTheSync) {
  EXPECT_EQ(ordered_json(SummaryCoverage()).dump(), emptyCoverageText);
}

TEST(MetricEncoding, KeepsTheOrderOfTheFields) {
  EXPECT_EQ(ordered_json(fullMetric()).dump(), fullMetricText);
}

TEST(MetricEncoding, LeavesOutWhatIsAbsent) {
  EXPECT_EQ(ordered_json(Metric()).dump(), R"({"label":"","unit":"","text":"","state":"present"})");
}

TEST(MetricEncoding, LeavesOutAValueThatIsNoNumber) {
  for (const double value : {std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()}) {
    Metric metric;
    metric.value = value;
    EXPECT_EQ(ordered_json(metric).dump(), ordered_json(Metric()).dump()) << value;
  }
}

TEST(CardEncoding, KeepsTheOrderOfTheFields) {
  EXPECT_EQ(ordered_json(fullCard()).dump(),
            std::string(R"({"key":"heart","title":"心率","state":"absent_expected","metrics":[)") +
                fullMetricText + R"json(],"needsDevice":"未采集(未检测到 Apple Watch)"})json");
}

TEST(CardEncoding, LeavesOutTheDeviceThatIsNotNeeded) {
  EXPECT_EQ(ordered_json(SummaryCard()).dump(),
            R"({"key":"","title":"","state":"present","metrics":[]})");
}

TEST(SummaryEncoding, KeepsTheOrderOfTheFields) {
  HealthSummary summary = fullSummary();
  summary.cards.clear();
  EXPECT_EQ(ordered_json(summary).dump(),
            std::string(R"({"personID":"ann-01","person":"Ann","generatedAt":1709300000.5,)") +
                R"("coverage":)" + fullCoverageText +
                R"(,"cards":[],"insights":[{"key":"weekday",)"
                R"("text":"Your most active day is Monday."}]})");
}

TEST(SummaryEncoding, OfNoDataCarriesAnEmptyCoverage) {
  EXPECT_EQ(ordered_json(HealthSummary()).dump(),
            std::string(R"({"personID":"","person":"","generatedAt":0.0,"coverage":)") +
                emptyCoverageText + R"(,"cards":[],"insights":[]})");
}

TEST(SummaryDecoding, GivesBackWhatWasWritten) {
  EXPECT_EQ(again(fullSummary()), fullSummary());
  EXPECT_EQ(again(HealthSummary()), HealthSummary());
  EXPECT_EQ(again(Metric()), Metric());
  EXPECT_EQ(again(SummaryCard()), SummaryCard());
}

TEST(SummaryDecoding, SeesEveryField) {
  HealthSummary other = fullSummary();
  other.cards[0].metrics[0].samples = 29;
  EXPECT_NE(again(other), fullSummary());
  other = fullSummary();
  other.coverage.yearly["2022"] = 0;
  EXPECT_NE(again(other), fullSummary());
}

TEST(CardDecoding, KnowsTheFourStatesAlone) {
  json card = json::parse(ordered_json(fullCard()).dump());
  EXPECT_EQ(card.get<SummaryCard>().state, DataState::absentExpected);

  for (const char* state : {"absent", "Present", "absentExpected", ""}) {
    card["state"] = state;
    EXPECT_EQ(messageFor<SummaryCard>(card), "state is none of the known states") << state;
  }
  card["state"] = 1;
  EXPECT_EQ(messageFor<SummaryCard>(card), "state is not a string");
}

/// Takes every key of `whole` away in turn: `optionalKeys` may be missing, and null, the others
/// not.
template <typename Record>
void checkKeys(const Record& whole, const std::vector<std::string>& optionalKeys) {
  const json object = json::parse(ordered_json(whole).dump());
  for (const auto& [key, value] : object.items()) {
    json without = object;
    without.erase(key);
    json null = object;
    null[key] = nullptr;
    const bool optional = std::ranges::find(optionalKeys, key) != optionalKeys.end();

    EXPECT_EQ(messageFor<Record>(without).empty(), optional) << key;
    EXPECT_EQ(messageFor<Record>(null).empty(), optional) << key;
  }
}

TEST(SummaryDecoding, NeedsEveryKeyThatIsNotOptional) {
  checkKeys(fullSummary(), {});
  checkKeys(fullCoverage(), {"lastSyncAt"});
  checkKeys(fullCard(), {"needsDevice"});
  checkKeys(fullMetric(), {"value", "samples"});
  checkKeys(Insight{"weekday", "text"}, {});
}

TEST(SummaryDecoding, NamesWhatIsWrong) {
  json summary = json::parse(ordered_json(fullSummary()).dump());
  summary["coverage"]["yearly"]["2024"] = "two";
  EXPECT_EQ(messageFor<HealthSummary>(summary), "coverage.yearly.2024 is not an integer");

  summary["coverage"]["yearly"] = json::array();
  EXPECT_EQ(messageFor<HealthSummary>(summary), "coverage.yearly is not an object");

  summary["coverage"].erase("yearly");
  EXPECT_EQ(messageFor<HealthSummary>(summary), "coverage.yearly is missing");

  summary["coverage"] = 7;
  EXPECT_EQ(messageFor<HealthSummary>(summary),
            "coverage.firstDay is wanted of what is not an object");
}

TEST(SummaryDecoding, NamesThePlaceOfAMetric) {
  json summary = json::parse(ordered_json(fullSummary()).dump());
  summary["cards"][0]["metrics"][0]["samples"] = 2.5;
  EXPECT_EQ(messageFor<HealthSummary>(summary), "cards[0].metrics[0].samples is not an integer");
}

}  // namespace
