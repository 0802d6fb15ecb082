#include "summary/SummaryModel.h"
#include "platform/AppleFormat.h"
#include "platform/JsonFields.h"

#include <algorithm>
#include <array>

using JsonFields::optional;
using JsonFields::required;
using JsonFields::setIfPresent;

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

DataState stateIn(const nlohmann::json& json) {
  const auto name = required<std::string>(json, "state");
  const auto row = std::ranges::find(stateNames, name, &StateName::name);
  if (row == stateNames.end()) throw DecodingError("state is none of the known states");
  return row->state;
}

std::map<std::string, std::int64_t> yearlyIn(const nlohmann::json& json) {
  const auto found = json.find("yearly");
  if (found == json.end() || !found->is_object()) throw DecodingError("yearly is not an object");
  std::map<std::string, std::int64_t> yearly;
  for (const auto& [year, count] : found->items()) {
    yearly[year] = JsonFields::decoded<std::int64_t>(count, "yearly." + year);
  }
  return yearly;
}

}  // namespace

std::string_view rawValue(DataState state) {
  return std::ranges::find(stateNames, state, &StateName::state)->name;
}

bool spansTooFewDays(std::string_view firstDay, std::string_view lastDay) {
  return AppleFormat::daysBetween(firstDay, lastDay) < 400;
}

void to_json(nlohmann::ordered_json& json, const SummaryCoverage& coverage) {
  json = nlohmann::ordered_json::object();
  json["firstDay"] = coverage.firstDay;
  json["lastDay"] = coverage.lastDay;
  json["records"] = coverage.records;
  json["typeCount"] = coverage.typeCount;
  json["devices"] = coverage.devices;
  json["collected"] = coverage.collected;
  json["absentExpected"] = coverage.absentExpected;
  json["suspicious"] = coverage.suspicious;
  json["backfilling"] = coverage.backfilling;
  json["completeFrom"] = coverage.completeFrom;
  json["backfillFrontier"] = coverage.backfillFrontier;
  json["yearly"] = coverage.yearly;
  setIfPresent(json, "lastSyncAt", coverage.lastSyncAt);
}

void from_json(const nlohmann::json& json, SummaryCoverage& coverage) {
  coverage.firstDay = required<std::string>(json, "firstDay");
  coverage.lastDay = required<std::string>(json, "lastDay");
  coverage.records = required<std::int64_t>(json, "records");
  coverage.typeCount = required<std::int64_t>(json, "typeCount");
  coverage.devices = required<std::vector<std::string>>(json, "devices");
  coverage.collected = required<std::vector<std::string>>(json, "collected");
  coverage.absentExpected = required<std::vector<std::string>>(json, "absentExpected");
  coverage.suspicious = required<std::vector<std::string>>(json, "suspicious");
  coverage.backfilling = required<bool>(json, "backfilling");
  coverage.completeFrom = required<std::string>(json, "completeFrom");
  coverage.backfillFrontier = required<std::string>(json, "backfillFrontier");
  coverage.yearly = yearlyIn(json);
  coverage.lastSyncAt = optional<double>(json, "lastSyncAt");
}

void to_json(nlohmann::ordered_json& json, const Metric& metric) {
  json = nlohmann::ordered_json::object();
  json["label"] = metric.label;
  setIfPresent(json, "value", metric.value);
  json["unit"] = metric.unit;
  setIfPresent(json, "samples", metric.samples);
  json["text"] = metric.text;
  json["state"] = rawValue(metric.state);
}

void from_json(const nlohmann::json& json, Metric& metric) {
  metric.label = required<std::string>(json, "label");
  metric.value = optional<double>(json, "value");
  metric.unit = required<std::string>(json, "unit");
  metric.samples = optional<std::int64_t>(json, "samples");
  metric.text = required<std::string>(json, "text");
  metric.state = stateIn(json);
}

void to_json(nlohmann::ordered_json& json, const SummaryCard& card) {
  json = nlohmann::ordered_json::object();
  json["key"] = card.key;
  json["title"] = card.title;
  json["state"] = rawValue(card.state);
  json["metrics"] = card.metrics;
  setIfPresent(json, "needsDevice", card.needsDevice);
}

void from_json(const nlohmann::json& json, SummaryCard& card) {
  card.key = required<std::string>(json, "key");
  card.title = required<std::string>(json, "title");
  card.state = stateIn(json);
  card.metrics = required<std::vector<Metric>>(json, "metrics");
  card.needsDevice = optional<std::string>(json, "needsDevice");
}

void to_json(nlohmann::ordered_json& json, const Insight& insight) {
  json = nlohmann::ordered_json::object();
  json["key"] = insight.key;
  json["text"] = insight.text;
}

void from_json(const nlohmann::json& json, Insight& insight) {
  insight.key = required<std::string>(json, "key");
  insight.text = required<std::string>(json, "text");
}

void to_json(nlohmann::ordered_json& json, const HealthSummary& summary) {
  json = nlohmann::ordered_json::object();
  json["personID"] = summary.personID;
  json["person"] = summary.person;
  json["generatedAt"] = summary.generatedAt;
  json["coverage"] = summary.coverage;
  json["cards"] = summary.cards;
  json["insights"] = summary.insights;
}

void from_json(const nlohmann::json& json, HealthSummary& summary) {
  summary.personID = required<std::string>(json, "personID");
  summary.person = required<std::string>(json, "person");
  summary.generatedAt = required<double>(json, "generatedAt");
  summary.coverage = required<SummaryCoverage>(json, "coverage");
  summary.cards = required<std::vector<SummaryCard>>(json, "cards");
  summary.insights = required<std::vector<Insight>>(json, "insights");
}
