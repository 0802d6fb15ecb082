#pragma once
// Calls of tools, and of the functions they are made of, without a server.

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

/// 2024-03-17 12:00:00 UTC, the present of most tests.
inline constexpr double testNow = 1710676800;

/// What an MCPError says.
struct Refusal {
  int code;
  std::string message;

  bool operator==(const Refusal&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const Refusal& refusal) {
  return stream << refusal.code << " " << refusal.message;
}

/// Calls as the server makes them: with the household's roster, one language and a fixed clock.
/// Refers to nothing of the household but its files.
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

  /// What `function` makes of the call with these arguments.
  template <typename Function>
  auto of(const nlohmann::json& arguments, Function function) {
    return function(Tools::Call{arguments, roster, log, lang, clock, grouping});
  }

  /// The MCPError that leaves `function`; `nullopt` when none does.
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
