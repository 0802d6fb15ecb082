#pragma once
// The measured household and its only member.

#include "mcp/tools/Tools.h"
#include "platform/Clock.h"
#include "platform/Logger.h"
#include "roster/Roster.h"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <string>

/// A data root with everything a call needs. Its clock is fixed on the last day of its records.
/// Failures of the roster throw ReceiverError.
struct Subject {
  explicit Subject(const std::filesystem::path& dataRoot);

  /// The input of a tool. `arguments` must outlive the call.
  Tools::Call call(const nlohmann::json& arguments);

  Clock clock;
  DigitGrouping grouping;
  Logger log;
  Roster roster;
  Member member;
};
