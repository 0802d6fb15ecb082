#pragma once
// The tools for clients: their catalogue, and one function per tool.

#include "platform/Clock.h"
#include "platform/Locale.h"
#include "platform/Logger.h"
#include "platform/SummaryLang.h"
#include "roster/Roster.h"
#include "store/Database.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace Tools {

/// The input of a tool: the caller's arguments and the injected environment.
struct Call {
  const nlohmann::json& arguments;  ///< a JSON object
  const Roster& roster;
  Logger& log;  ///< for diagnostics
  SummaryLang lang;
  const Clock& clock;
  const DigitGrouping& grouping;                         ///< of the user's locale
  int patienceMilliseconds = usualPatienceMilliseconds;  ///< waiting time for a locked database
  Patience* sharedPatience = nullptr;  ///< used instead: a total for all locked databases
};

/// The descriptors of all tools in display order: "name", "description" and "inputSchema", with
/// texts in `lang`.
nlohmann::ordered_json schemas(SummaryLang lang);

/// The answer of the tool called `name`, as text. Throws MCPError (-32601) for an unknown name;
/// errors of the tool are passed on.
std::string answer(std::string_view name, const Call& call);

/// list_persons: the members on this computer, with the range of their data and their last sync.
/// Never fails: the line of a member with unreadable data has no data part. The call's patience is
/// the total for all members. Once it is used up, a locked database is tried only once.
std::string listPersons(const Call& call);

/// get_overview: one person's summary with the coverage notice. Throws MCPError (-32602) for an
/// unknown person, and (-32603) when the person's database does not open. A failing query throws
/// ReceiverError.
std::string overview(const Call& call);

/// The same for a known member; the arguments are ignored.
std::string overviewOf(const Member& member, const Call& call);

/// get_trend: one metric of one person as a daily series. Throws MCPError (-32602) for an unknown
/// person or metric, and (-32603) when the person's database does not open. A failing query throws
/// ReceiverError. An invalid day is replaced by its default.
std::string trend(const Call& call);

/// get_day: all records of one day, one line per record type, then the day's workouts. Throws
/// MCPError (-32602) for an unknown person or an invalid day, and (-32603) when the person's
/// database does not open. A failing query throws ReceiverError.
std::string day(const Call& call);

/// get_workouts: the workouts of a range, filtered and paged, as text or JSON, with totals over all
/// matches. Throws MCPError (-32602) for arguments that violate the schema, and (-32603) when the
/// person's database does not open. A failing query throws ReceiverError.
std::string workouts(const Call& call);

/// get_workout_heart_rate: the heart-rate samples of one workout, as JSON. Throws MCPError (-32602)
/// for arguments that violate the schema. Errors of the store get the same code and keep their
/// message: most are an unknown identifier or a page beyond the end.
std::string workoutHeartRate(const Call& call);

/// compare_periods: one metric of one person in two ranges of days. Throws MCPError (-32602) for an
/// unknown person or metric or an invalid day, and (-32603) when the person's database does not
/// open. A failing query throws ReceiverError.
std::string compare(const Call& call);

}  // namespace Tools
