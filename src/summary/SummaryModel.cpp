#include "summary/SummaryModel.h"
#include "platform/JsonFields.h"

#include <algorithm>
#include <array>

using JsonFields::Field;

namespace {

struct StateName {
  DataState state;
  std::string_view name;
};

constexpr std::array stateNames{
    StateName{DataState::present, "present"},
    StateName{DataState::absentExpected, "absent_expected"},
    StateName{DataState::absentSuspicious, "absent_suspicious"},
    StateName{DataState::backfilling, "backfilling"},
};

}  // namespace

std::string_view rawValue(DataState state) {
  return std::ranges::find(stateNames, state, &StateName::state)->name;
}

namespace {

constexpr std::tuple coverageFields{Field{"firstDay", &SummaryCoverage::firstDay},
                                    Field{"lastDay", &SummaryCoverage::lastDay},
                                    Field{"records", &SummaryCoverage::records},
                                    Field{"typeCount", &SummaryCoverage::typeCount},
                                    Field{"devices", &SummaryCoverage::devices},
                                    Field{"collected", &SummaryCoverage::collected},
                                    Field{"absentExpected", &SummaryCoverage::absentExpected},
                                    Field{"suspicious", &SummaryCoverage::suspicious},
                                    Field{"backfilling", &SummaryCoverage::backfilling},
                                    Field{"completeFrom", &SummaryCoverage::completeFrom},
                                    Field{"backfillFrontier", &SummaryCoverage::backfillFrontier},
                                    Field{"yearly", &SummaryCoverage::yearly},
                                    Field{"lastSyncAt", &SummaryCoverage::lastSyncAt}};

constexpr std::tuple metricFields{Field{"label", &Metric::label},
                                  Field{"value", &Metric::value},
                                  Field{"unit", &Metric::unit},
                                  Field{"samples", &Metric::samples},
                                  Field{"text", &Metric::text},
                                  Field{"state", &Metric::state}};

constexpr std::tuple cardFields{Field{"key", &SummaryCard::key},
                                Field{"title", &SummaryCard::title},
                                Field{"state", &SummaryCard::state},
                                Field{"metrics", &SummaryCard::metrics},
                                Field{"needsDevice", &SummaryCard::needsDevice}};

constexpr std::tuple insightFields{Field{"key", &Insight::key}, Field{"text", &Insight::text}};

constexpr std::tuple summaryFields{Field{"personID", &HealthSummary::personID},
                                   Field{"person", &HealthSummary::person},
                                   Field{"generatedAt", &HealthSummary::generatedAt},
                                   Field{"coverage", &HealthSummary::coverage},
                                   Field{"cards", &HealthSummary::cards},
                                   Field{"insights", &HealthSummary::insights}};

}  // namespace

void from_json(const nlohmann::json& json, DataState& state) {
  if (!json.is_string()) throw DecodingError("is not a string");
  const auto row =
      std::ranges::find(stateNames, json.get_ref<const std::string&>(), &StateName::name);
  if (row == stateNames.end()) throw DecodingError("is none of the known states");
  state = row->state;
}

void to_json(nlohmann::ordered_json& json, DataState state) { json = rawValue(state); }

void from_json(const nlohmann::json& json, SummaryCoverage& coverage) {
  JsonFields::read(json, coverage, coverageFields);
}

void to_json(nlohmann::ordered_json& json, const SummaryCoverage& coverage) {
  JsonFields::write(json, coverage, coverageFields);
}

void from_json(const nlohmann::json& json, Metric& metric) {
  JsonFields::read(json, metric, metricFields);
}

void to_json(nlohmann::ordered_json& json, const Metric& metric) {
  JsonFields::write(json, metric, metricFields);
}

void from_json(const nlohmann::json& json, SummaryCard& card) {
  JsonFields::read(json, card, cardFields);
}

void to_json(nlohmann::ordered_json& json, const SummaryCard& card) {
  JsonFields::write(json, card, cardFields);
}

void from_json(const nlohmann::json& json, Insight& insight) {
  JsonFields::read(json, insight, insightFields);
}

void to_json(nlohmann::ordered_json& json, const Insight& insight) {
  JsonFields::write(json, insight, insightFields);
}

void from_json(const nlohmann::json& json, HealthSummary& summary) {
  JsonFields::read(json, summary, summaryFields);
}

void to_json(nlohmann::ordered_json& json, const HealthSummary& summary) {
  JsonFields::write(json, summary, summaryFields);
}
