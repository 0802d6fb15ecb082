#pragma once
// The stamps of an export, brought into one time zone.

#include "platform/Stamp.h"
#include "platform/TimeZone.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// A stamp as it is to be stored.
class LocalStamp {
public:
  explicit LocalStamp(Stamp local) : local(local) {}

  /// One whose time cannot be read stays as exported. `exported` outlives it.
  explicit LocalStamp(std::string_view exported);

  std::string_view text() const { return local ? local->text() : exported; }

  /// The day with which `text` begins; `nullopt` when it begins with none.
  std::optional<std::string_view> day() const;

private:
  std::string_view exported;
  std::optional<StampText> local;
  bool exportedDay = false;  ///< `exported` begins with a day
};

/// Brings stamps into a time zone. A phone writes all stamps of an export at the offset that it has
/// at that moment, so that one sample has another text half a year later. In a zone, with the
/// offset in force at its own moment, it has one text for ever, and begins with the day it was.
class LocalStamps {
public:
  /// `zone` outlives it. Without one, which is null, stamps keep the offset that they have.
  explicit LocalStamps(TimeZone* zone) : zone(zone) {}

  LocalStamp local(std::string_view exported);

  /// Stamps so far that begin with a day and whose time cannot be read.
  std::int64_t unreadable() const { return unreadableCount; }

  /// The first stamp whose time could be read, as exported.
  const std::optional<Stamp>& first() const { return firstStamp; }

private:
  TimeZone* zone;
  std::int64_t unreadableCount = 0;
  std::optional<Stamp> firstStamp;
};
