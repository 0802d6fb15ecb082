#pragma once
// The household under test and its only member.

#include "mcp/tools/Tools.h"
#include "platform/Clock.h"
#include "platform/Logger.h"
#include "roster/Roster.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <string>

/// A data root with all that a call works with, on a clock that stands still at the last day of its
/// records. The roster's failures leave as ReceiverError.
struct Subject {
  explicit Subject(const std::filesystem::path& dataRoot);

  /// What a tool works with. `arguments` outlive the call.
  Tools::Call call(const nlohmann::json& arguments);

  Clock clock;
  DigitGrouping grouping;
  Logger log;
  Roster roster;
  Member member;
};
