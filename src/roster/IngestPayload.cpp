#include "roster/IngestPayload.h"
#include "platform/JsonFields.h"

using JsonFields::Field;

namespace {

constexpr std::tuple stateFields{Field{"frontier", &BackfillState::frontier},
                                 Field{"earliest", &BackfillState::earliest},
                                 Field{"done", &BackfillState::done},
                                 Field{"completeFrom", &BackfillState::completeFrom}};

constexpr std::tuple hintFields{Field{"through", &HistoryHint::through},
                                Field{"earliest", &HistoryHint::earliest}};

}  // namespace

void from_json(const nlohmann::json& json, BackfillState& state) {
  JsonFields::read(json, state, stateFields);
}

void to_json(nlohmann::ordered_json& json, const BackfillState& state) {
  JsonFields::write(json, state, stateFields);
}

void from_json(const nlohmann::json& json, HistoryHint& hint) {
  JsonFields::read(json, hint, hintFields);
}

void to_json(nlohmann::ordered_json& json, const HistoryHint& hint) {
  JsonFields::write(json, hint, hintFields);
}
