// Stamps, days and moments; the input is a text, and its last bytes are also used as numbers.

#include "Target.h"
#include "platform/AppleFormat.h"

#include <cmath>
#include <cstring>
#include <string>

namespace {

using AppleFormat::dayParser;
using AppleFormat::dayText;
using AppleFormat::stampParser;

/// The number in the last bytes of the input; 0 when there are too few bytes.
template <typename Number>
Number lastBytes(const std::uint8_t* data, std::size_t size) {
  Number number{};
  if (size >= sizeof number) std::memcpy(&number, data + size - sizeof number, sizeof number);
  return number;
}

void checkDay(std::string_view text, std::int16_t count) {
  const std::optional<CivilDay> day = dayParser.parse(text);
  if (!day) {
    require(AppleFormat::daysBetween(text, "2024-03-01") == 0, "no day is no days away");
    return;
  }
  require(day->ok() && static_cast<int>(day->year()) >= 1, "a day is one of the calendar");
  const std::string written = dayText(*day);
  require(written.size() == 10, "a written day has ten characters");
  require(dayParser.parse(written) == day, "a day that is written reads back the same");
  const CivilDay earlier = AppleFormat::daysBefore(*day, count);
  require(AppleFormat::daysBetween(earlier, *day) == count, "days before are days between");
  const int year = AppleFormat::daysBetween(AppleFormat::yearBefore(*day), *day);
  require(year == 365 || year == 366, "a year before is a year away");
}

void checkStamp(std::string_view text) {
  const std::optional<std::int64_t> moment = stampParser.parse(text);
  // The common form is read at fixed positions, other forms from left to right. With a colon in the
  // zone, the same stamp takes the other path.
  constexpr std::size_t commonSize = 25;
  if (text.size() == commonSize && (text[20] == '+' || text[20] == '-') &&
      text.substr(21).find_first_not_of("0123456789") == std::string_view::npos) {
    const std::string other = std::string(text.substr(0, 23)) + ":" + std::string(text.substr(23));
    require(stampParser.parse(other) == moment, "both ways to read a stamp agree");
  }
  if (!moment) return;
  // Local times near the ends of the calendar are clamped, so they are not compared.
  constexpr std::int64_t earliest = -62135510400;
  constexpr std::int64_t latest = 253402214399;
  if (*moment < earliest || *moment > latest) return;
  const std::string written = AppleFormat::secondText(static_cast<double>(*moment)) + " +0000";
  require(stampParser.parse(written) == moment, "a moment that is written reads back the same");
}

void checkMoment(double moment) {
  const LocalTime time = AppleFormat::localTime(moment);
  require(time.day.ok() && time.hour >= 0 && time.hour < 24 && time.minute >= 0 &&
              time.minute < 60 && time.second >= 0 && time.second <= 60,
          "every moment has a local time");
  const std::string written = AppleFormat::secondText(moment);
  require(dayParser.parse(written.substr(0, 10)) == time.day,
          "a moment's text begins with its day");
  require(stampParser.parse(written + " Z").has_value(), "a moment's text is a stamp's");
  require(AppleFormat::minuteText(moment) == written.substr(0, 16), "minutes are seconds cut off");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = textOf(data, size);
  checkDay(text, lastBytes<std::int16_t>(data, size));
  checkStamp(text);
  checkMoment(lastBytes<double>(data, size));
  checkMoment(static_cast<double>(lastBytes<std::int64_t>(data, size)));
  return 0;
}
