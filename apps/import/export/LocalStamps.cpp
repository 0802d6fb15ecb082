#include "import/export/LocalStamps.h"
#include "platform/AppleFormat.h"

#include <cstddef>

namespace {

constexpr std::size_t dayLength = 10;

}  // namespace

// Only the start of the text is checked: phones with other clock formats and calendars write the
// time in several ways.
LocalStamp::LocalStamp(std::string_view exported)
    : exported(exported),
      exportedDay(exported.size() >= dayLength &&
                  AppleFormat::dayParser.parse(exported.substr(0, dayLength)).has_value()) {}

std::optional<std::string_view> LocalStamp::day() const {
  if (local) return local->day();
  return exportedDay ? std::optional(exported.substr(0, dayLength)) : std::nullopt;
}

LocalStamp LocalStamps::local(std::string_view exported) {
  // One day inside the years 1 to 9999, so that no zone's offset leaves that range.
  constexpr std::int64_t earliest = -62135510400;
  constexpr std::int64_t latest = 253402214399;
  const std::optional<Stamp> stamp = AppleFormat::stampParser.stamp(exported);
  if (stamp && !firstStamp) firstStamp = stamp;
  if (stamp && stamp->moment >= earliest && stamp->moment <= latest) {
    return LocalStamp(zone == nullptr ? *stamp : zone->stamp(stamp->moment));
  }
  const LocalStamp kept(exported);
  if (kept.day()) ++unreadableCount;
  return kept;
}
