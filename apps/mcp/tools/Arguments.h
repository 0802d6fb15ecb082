#pragma once
// Reading a call's arguments: whom it is about, which days, which metric.

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

/// The text under `key`; `nullopt` when the key is missing or its value is no text.
std::optional<std::string> lenientText(const Call& call, const char* key);

/// The member whom "person" names, by id or by display name, exactly but for blanks around it. It
/// may be left out when there is one member only: every answer is about one person, never about
/// all. Throws MCPError (-32602) when nobody, or nobody certain, is meant.
Member resolve(const Call& call);

/// The display names, joined by ", ".
std::string names(std::span<const Member> members);

/// How a member's database is opened: read-only and with the call's patience.
HealthStore::Options reading(const Call& call);

/// The member's database, open for reading. Throws MCPError (-32603), in Chinese whatever the
/// language, when it does not open.
HealthStore open(const Member& member, const Call& call);

/// "from" and "to"; a missing or malformed one falls back to 90 days ago, or today, without notice.
DayRange range(const Call& call);

/// The text under `key`; `nullopt` when the key is missing. Throws MCPError (-32602) when the value
/// is no text: `refused` in the call's language, "{0}" being the key.
std::optional<std::string> strictText(const Call& call, const char* key, const Phrase& refused);

/// What a whole number may be.
struct IntegerRule {
  std::int64_t fallback;  ///< when the key is missing
  std::int64_t lowest;
  std::int64_t highest;
};

/// The whole number under `key`, 50 and 50.0 alike. Throws MCPError (-32602) when the value is
/// anything else or out of bounds: `refused` in the call's language, "{0}" being the key, "{1}" and
/// "{2}" the bounds.
std::int64_t integerArgument(const Call& call, const char* key, const IntegerRule& rule,
                             const Phrase& refused);

/// The text under `key` when it names a day, unchanged; `nullopt` when it is missing, no text or no
/// day.
std::optional<std::string> dayArgument(const Call& call, const char* key);

/// The metric that "metric" names exactly. Throws MCPError (-32602) when it is missing or unknown.
HealthMetric metricArg(const Call& call);

/// Today in the machine's time zone.
CivilDay today(const Call& call);

}  // namespace Tools
