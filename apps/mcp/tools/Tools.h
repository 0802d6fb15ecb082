#pragma once
// The tools that a client can call: their catalogue, and one function a tool.

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

/// All that a tool works with: what the caller asked, and the world it is asked in.
struct Call {
  const nlohmann::json& arguments;  ///< a JSON object
  const Roster& roster;
  Logger& log;  ///< for diagnostics
  SummaryLang lang;
  const Clock& clock;
  const DigitGrouping& grouping;                         ///< of the user's locale
  int patienceMilliseconds = usualPatienceMilliseconds;  ///< with a database that is locked
  Patience* sharedPatience = nullptr;  ///< with all locked databases together, instead
};

/// The descriptors of all tools, in the order a client shows them: "name", "description" and
/// "inputSchema", the texts in `lang`.
nlohmann::ordered_json schemas(SummaryLang lang);

/// The answer of the tool called `name`, as text. Throws MCPError (-32601) when there is none of
/// that name; errors of the tool pass.
std::string answer(std::string_view name, const Call& call);

/// list_persons: who is on this computer, each one's range of data and last sync. Never fails: of a
/// member whose data cannot be read, the line has no data part. The call's patience is for all
/// members together; once it is spent, a database that is locked is tried once.
std::string listPersons(const Call& call);

/// get_overview: one person's summary with the coverage notice. Throws MCPError (-32602) for an
/// unknown person, (-32603) when the person's database does not open; a failing query leaves as
/// ReceiverError.
std::string overview(const Call& call);

/// The same for a member who is known already, whatever the arguments say.
std::string overviewOf(const Member& member, const Call& call);

/// get_trend: one metric of one person as a daily series. Throws MCPError (-32602) for an unknown
/// person or metric, (-32603) when the person's database does not open; a failing query leaves as
/// ReceiverError. A date that is no day falls back to its default.
std::string trend(const Call& call);

/// get_day: everything recorded on one day, one line per record type, then the day's workouts.
/// Throws MCPError (-32602) for an unknown person or a date that is no day, (-32603) when the
/// person's database does not open; a failing query leaves as ReceiverError.
std::string day(const Call& call);

/// get_workouts: the workouts of a range, filtered and page by page, as text or JSON, with totals
/// over all that match. Throws MCPError (-32602) for arguments that do not hold what the schema
/// says, (-32603) when the person's database does not open; a failing query leaves as
/// ReceiverError.
std::string workouts(const Call& call);

/// get_workout_heart_rate: the heart-rate samples of one workout, as JSON. Throws MCPError (-32602)
/// for arguments that do not hold what the schema says, and also for what the store cannot do, in
/// the store's own words: mostly it is an identifier or a page that does not exist.
std::string workoutHeartRate(const Call& call);

/// compare_periods: one metric of one person in two ranges of days. Throws MCPError (-32602) for an
/// unknown person or metric or a date that is no day, (-32603) when the person's database does not
/// open; a failing query leaves as ReceiverError.
std::string compare(const Call& call);

}  // namespace Tools
