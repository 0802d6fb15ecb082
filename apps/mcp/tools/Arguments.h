#pragma once
// Reading a call's arguments: the person, the days, the metric.

#include "mcp/tools/Tools.h"
#include "platform/AppleFormat.h"
#include "platform/Phrase.h"
#include "roster/Roster.h"
#include "store/HealthStore.h"
#include "summary/Metrics.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace Tools {

/// The text under `key`; `nullopt` when the key is missing or its value is not a text.
std::optional<std::string> lenientText(const Call& call, const char* key);

/// The member with the id or the exact display name in "person"; blanks around it are ignored. It
/// may be omitted only if there is a single member: every answer is about one person, never about
/// all. Throws MCPError (-32602) when no member or more than one matches.
Member resolve(const Call& call);

/// The display names, joined by ", ".
std::string names(std::span<const Member> members);

/// The options for opening a member's database: read-only, with the call's patience.
HealthStore::Options reading(const Call& call);

/// The member's database, open for reading. Throws MCPError (-32603), in Chinese in both languages,
/// when it does not open.
HealthStore open(const Member& member, const Call& call);

/// "from" and "to". A missing or malformed "from" becomes 90 days ago, such a "to" becomes today,
/// without notice.
DayRange range(const Call& call);

/// The text under `key`; `nullopt` when the key is missing. Throws MCPError (-32602) when the value
/// is not a text: `refused` in the call's language, with the key for "{0}".
std::optional<std::string> strictText(const Call& call, const char* key, const Phrase& refused);

/// The valid range of a whole number.
struct IntegerRule {
  std::int64_t fallback;  ///< used if the key is missing
  std::int64_t lowest;
  std::int64_t highest;
};

/// The whole number under `key`; 50 and 50.0 are the same. Throws MCPError (-32602) for any other
/// value or one out of bounds: `refused` in the call's language, with the key for "{0}" and the
/// bounds for "{1}" and "{2}".
std::int64_t integerArgument(const Call& call, const char* key, const IntegerRule& rule,
                             const Phrase& refused);

/// The text under `key`, unchanged, if it is a valid day; `nullopt` otherwise or when it is
/// missing.
std::optional<std::string> dayArgument(const Call& call, const char* key);

/// The metric with exactly the name in "metric". Throws MCPError (-32602) when it is missing or
/// unknown.
HealthMetric metricArg(const Call& call);

/// Today in the machine's time zone.
CivilDay today(const Call& call);

}  // namespace Tools
