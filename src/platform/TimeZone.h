#pragma once
// The time zones of the system.

#include "platform/Stamp.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One time zone, identified by its name. The rules come from the system's own database through the
/// C library. An offset stays the same for months, so a zone queries a stretch of time once and
/// caches it. During a query the whole process is in that zone, so a program with threads may not
/// use this class.
class TimeZone {
public:
  /// The zone called `name`: "Asia/Shanghai", "Etc/UTC". `nullopt` when the system has no zone of
  /// that name. A rule ("CST-8"), a path and an alias of the machine's own zone are not names.
  static std::optional<TimeZone> named(std::string_view name);

  const std::string& name() const { return zoneName; }

  /// `moment` (seconds since 1970 UTC) with its offset in this zone. The offset is rounded to
  /// minutes, half a minute away from zero: local times before the introduction of zones have
  /// seconds in their offset. Throws std::system_error when the system cannot convert it.
  Stamp stamp(std::int64_t moment);

private:
  /// Clocks have this offset from `from` until the next change.
  struct Change {
    std::int64_t from;
    int offset;
  };

  explicit TimeZone(std::string_view name) : zoneName(name) {}

  const std::vector<Change>& changesIn(std::int64_t span);

  std::string zoneName;
  std::map<std::int64_t, std::vector<Change>> known;  ///< by span, see TimeZone.cpp
  // The stretch of the last query: neighbouring records of an export are close in time.
  std::int64_t stretchBegin = 0;
  std::int64_t stretchEnd = 0;  ///< excluded; the stretch is empty before the first query
  int stretchOffset = 0;
};
