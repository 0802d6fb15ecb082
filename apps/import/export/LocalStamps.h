#pragma once
// Conversion of an export's stamps to one time zone.

#include "platform/Stamp.h"
#include "platform/TimeZone.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// A stamp in its stored form.
class LocalStamp {
public:
  explicit LocalStamp(Stamp local) : local(local) {}

  /// A stamp with an unreadable time, which stays as exported. `exported` must outlive this object.
  explicit LocalStamp(std::string_view exported);

  std::string_view text() const { return local ? local->text() : exported; }

  /// The day at the start of `text`; `nullopt` when there is none.
  std::optional<std::string_view> day() const;

private:
  std::string_view exported;
  std::optional<StampText> local;
  bool exportedDay = false;  ///< `exported` starts with a day
};

/// Converts stamps to a time zone. A phone writes all stamps of an export at its current offset, so
/// the same sample has another text half a year later. In a zone, with the offset of its own
/// moment, a sample always has the same text. That text starts with the day of the sample.
class LocalStamps {
public:
  /// `zone` must outlive this object. With a null zone, stamps keep their offset.
  explicit LocalStamps(TimeZone* zone) : zone(zone) {}

  LocalStamp local(std::string_view exported);

  /// The number of stamps so far with a day but an unreadable time.
  std::int64_t unreadable() const { return unreadableCount; }

  /// The first stamp with a readable time, as exported.
  const std::optional<Stamp>& first() const { return firstStamp; }

private:
  TimeZone* zone;
  std::int64_t unreadableCount = 0;
  std::optional<Stamp> firstStamp;
};
