#pragma once
// The time zones that the system knows.

#include "platform/Stamp.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One time zone, by its name. The rules are those of the system's own database, read through the C
/// library. An offset holds for months, so a zone asks once for a stretch of time and remembers it.
/// While it asks, the process is in that zone; a program with threads may not use it.
class TimeZone {
public:
  /// The zone called `name`: "Asia/Shanghai", "Etc/UTC". `nullopt` when the system has none of that
  /// name. A rule ("CST-8"), a path and a name for whatever zone the machine is in are no names.
  static std::optional<TimeZone> named(std::string_view name);

  const std::string& name() const { return zoneName; }

  /// `moment` (seconds since 1970 UTC) as clocks in this zone show it. The offset is rounded to
  /// minutes, half a minute away from zero: before there were zones, places had seconds in theirs.
  /// Throws std::system_error when the system cannot tell.
  Stamp stamp(std::int64_t moment);

private:
  /// From a moment on, up to the next of these, clocks are at one offset.
  struct Change {
    std::int64_t from;
    int offset;
  };

  explicit TimeZone(std::string_view name) : zoneName(name) {}

  const std::vector<Change>& changesIn(std::int64_t span);

  std::string zoneName;
  std::map<std::int64_t, std::vector<Change>> known;  ///< by span, see TimeZone.cpp
  // The stretch that was asked for last: neighbours in an export are neighbours in time.
  std::int64_t stretchBegin = 0;
  std::int64_t stretchEnd = 0;  ///< excluded; an empty stretch before the first question
  int stretchOffset = 0;
};
