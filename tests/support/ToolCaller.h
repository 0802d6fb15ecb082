#pragma once
// Calls of tools, and of their helper functions, without a server.

#include "mcp/tools/MCPError.h"
#include "mcp/tools/Tools.h"
#include "platform/Logger.h"
#include "platform/SummaryLang.h"
#include "roster/Roster.h"
#include "support/Household.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <ostream>
#include <string>

/// 2024-03-17 12:00:00 UTC, the current time in most tests.
inline constexpr double testNow = 1710676800;

/// The contents of an MCPError.
struct Refusal {
  int code;
  std::string message;

  bool operator==(const Refusal&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Refusal& refusal) {
  return stream << refusal.code << " " << refusal.message;
}

/// Calls like those of the server: with the household's roster, one language and a fixed clock.
/// Refers only to the household's files.
class ToolCaller {
public:
  explicit ToolCaller(const Household& household, SummaryLang lang = SummaryLang::en,
                      double now = testNow)
      : log(std::nullopt, Logger::Level::error, false, [] { return testNow; }),
        clock([now] { return now; }),
        roster(household.rosterFile(), log, clock),
        lang(lang) {
    roster.load();
  }

  /// The result of `function` for a call with these arguments.
  template <typename Function>
  auto of(const nlohmann::json& arguments, Function function) {
    return function(Tools::Call{arguments, roster, log, lang, clock, grouping});
  }

  /// The MCPError that `function` throws; `nullopt` when it throws none.
  template <typename Function>
  std::optional<Refusal> refusal(const nlohmann::json& arguments, Function function) {
    try {
      of(arguments, function);
      return std::nullopt;
    } catch (const MCPError& error) {
      return Refusal{error.code, error.what()};
    }
  }

private:
  Logger log;
  Clock clock;
  DigitGrouping grouping;
  Roster roster;
  SummaryLang lang;
};
