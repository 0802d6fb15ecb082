#pragma once
// One member's health summary as plain records, ready for display and independent of the database.

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Whether a figure exists, and the reason when it does not.
enum class DataState {
  present,           ///< data exists for the requested period
  absentExpected,    ///< no data, as expected: no device records it
  absentSuspicious,  ///< no data, unexpectedly: permission may be off
  backfilling,       ///< no data yet, but the history is still coming in
};

/// The state's name in JSON: "present", "absent_expected", "absent_suspicious", "backfilling".
std::string_view rawValue(DataState state);

/// What data exists and how complete it is. Days are "yyyy-MM-dd".
struct SummaryCoverage {
  std::string firstDay;                     ///< first day with data; "" without data
  std::string lastDay;                      ///< last day with data; "" without data
  std::int64_t records = 0;                 ///< stored samples
  std::int64_t typeCount = 0;               ///< distinct types among them
  std::vector<std::string> devices;         ///< names of the sources, most recently active first
  std::vector<std::string> collected;       ///< kinds of data that are present
  std::vector<std::string> absentExpected;  ///< kinds missing for a known reason
  std::vector<std::string> suspicious;      ///< kinds missing without a known reason
  bool backfilling = false;                 ///< the history is still coming in from the phone
  std::string completeFrom;      ///< day from which the history is complete; "" when unknown
  std::string backfillFrontier;  ///< day that the backfill has reached; "" when unknown
  std::map<std::string, std::int64_t> yearly;  ///< records by "yyyy"
  std::optional<double> lastSyncAt;            ///< seconds since 1970; absent when never synced

  bool operator==(const SummaryCoverage&) const = default;
};

/// One row of a card.
struct Metric {
  std::string label;                    ///< in the summary's language
  std::optional<double> value;          ///< the unrounded number of the row
  std::string unit;                     ///< as displayed
  std::optional<std::int64_t> samples;  ///< number of days or samples behind the value
  std::string text;  ///< the displayed value or the reason for its absence; "" hides the row
  DataState state = DataState::present;

  bool operator==(const Metric&) const = default;
};

/// One block of rows on one theme.
struct SummaryCard {
  std::string key;    ///< "overview", "activity", "heart", "sleep", "workouts" or "body"
  std::string title;  ///< in the summary's language
  DataState state = DataState::present;
  std::vector<Metric> metrics;
  std::optional<std::string> needsDevice;  ///< notice about the missing device, if there is one

  bool operator==(const SummaryCard&) const = default;
};

/// One observation.
struct Insight {
  std::string key;   ///< "weekday", "resting_hr" or "best_month"
  std::string text;  ///< the sentence, in the summary's language

  bool operator==(const Insight&) const = default;
};

/// The whole summary of one member.
struct HealthSummary {
  std::string personID;
  std::string person;      ///< display name
  double generatedAt = 0;  ///< seconds since 1970
  SummaryCoverage coverage;
  std::vector<SummaryCard> cards;
  std::vector<Insight> insights;

  bool operator==(const HealthSummary&) const = default;
};

/// JSON keys are the field names in the order above. Absent fields are omitted, never null.
/// Decoding throws DecodingError for a missing key, another JSON type or an unknown state.
void to_json(nlohmann::ordered_json& json, DataState state);
void to_json(nlohmann::ordered_json& json, const SummaryCoverage& coverage);
void to_json(nlohmann::ordered_json& json, const Metric& metric);
void to_json(nlohmann::ordered_json& json, const SummaryCard& card);
void to_json(nlohmann::ordered_json& json, const Insight& insight);
void to_json(nlohmann::ordered_json& json, const HealthSummary& summary);
void from_json(const nlohmann::json& json, DataState& state);
void from_json(const nlohmann::json& json, SummaryCoverage& coverage);
void from_json(const nlohmann::json& json, Metric& metric);
void from_json(const nlohmann::json& json, SummaryCard& card);
void from_json(const nlohmann::json& json, Insight& insight);
void from_json(const nlohmann::json& json, HealthSummary& summary);
