#pragma once
// A phone's report about its history, as stored in the roster file.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>

/// The progress of the backfill of a member's history. JSON keys are the field names.
struct BackfillState {
  std::optional<std::string> frontier;      ///< day that the backfill has reached
  std::optional<std::string> earliest;      ///< earliest day that exists on the phone
  bool done = false;                        ///< the backfill has finished
  std::optional<std::string> completeFrom;  ///< day from which the stored history is complete

  bool operator==(const BackfillState&) const = default;
};

/// The extent of a phone's history, as the phone reported it. JSON keys are the field names.
struct HistoryHint {
  std::string through;                  ///< day up to which history was sent
  std::optional<std::string> earliest;  ///< earliest day available

  bool operator==(const HistoryHint&) const = default;
};

/// Decoding throws DecodingError for a missing required key or a value of another JSON type.
/// Unknown keys are ignored; null counts as absent. Encoding omits absent fields.
void from_json(const nlohmann::json& json, BackfillState& state);
void from_json(const nlohmann::json& json, HistoryHint& hint);
void to_json(nlohmann::ordered_json& json, const BackfillState& state);
void to_json(nlohmann::ordered_json& json, const HistoryHint& hint);
