#include "roster/IngestPayload.h"
#include "platform/JsonFields.h"

void from_json(const nlohmann::json& json, BackfillState& state) {
  state.frontier = JsonFields::optional<std::string>(json, "frontier");
  state.earliest = JsonFields::optional<std::string>(json, "earliest");
  state.done = JsonFields::required<bool>(json, "done");
  state.completeFrom = JsonFields::optional<std::string>(json, "completeFrom");
}

void from_json(const nlohmann::json& json, HistoryHint& hint) {
  hint.through = JsonFields::required<std::string>(json, "through");
  hint.earliest = JsonFields::optional<std::string>(json, "earliest");
}

void to_json(nlohmann::ordered_json& json, const BackfillState& state) {
  json = nlohmann::ordered_json::object();
  JsonFields::setIfPresent(json, "frontier", state.frontier);
  JsonFields::setIfPresent(json, "earliest", state.earliest);
  json["done"] = state.done;
  JsonFields::setIfPresent(json, "completeFrom", state.completeFrom);
}

void to_json(nlohmann::ordered_json& json, const HistoryHint& hint) {
  json = nlohmann::ordered_json::object();
  json["through"] = hint.through;
  JsonFields::setIfPresent(json, "earliest", hint.earliest);
}
