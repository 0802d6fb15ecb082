#include "platform/TimeZone.h"
#include "platform/System.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace {

/// Offsets are queried in spans of this many seconds, a little more than a year.
constexpr std::int64_t spanLength = 402LL * 86400;

/// Shorter than any offset has ever lasted: the shortest lasted four days.
constexpr std::int64_t step = 3LL * 86400;
static_assert(spanLength % step == 0);

/// Puts the process into another zone; the destructor restores the previous one.
class ZoneInForce {
public:
  explicit ZoneInForce(const std::string& name) : before(System::variable("TZ")) {
    // The colon marks a name, never a rule.
    if (setenv("TZ", (":" + name).c_str(), 1) != 0) {
      throw std::system_error(errno, std::generic_category(), "setenv");
    }
    tzset();
  }

  ~ZoneInForce() {
    // Restoring the old value cannot fail for lack of memory: the C library keeps that string.
    if (before) {
      setenv("TZ", before->c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }

  ZoneInForce(const ZoneInForce&) = delete;
  ZoneInForce& operator=(const ZoneInForce&) = delete;

private:
  std::optional<std::string> before;
};

/// The current zone's offset at `moment`, in seconds, rounded to minutes.
int offsetAt(std::int64_t moment) {
  const auto time = static_cast<std::time_t>(moment);
  std::tm parts{};
  if (localtime_r(&time, &parts) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "localtime_r");
  }
  const auto seconds = static_cast<int>(parts.tm_gmtoff);
  const int minutes = (std::abs(seconds) + 30) / 60;
  return (seconds < 0 ? -minutes : minutes) * 60;
}

/// The first moment after `begin` whose offset is not `offset`. The offset at `end` must differ
/// from it.
std::int64_t endOfOffset(int offset, std::int64_t begin, std::int64_t end) {
  while (end - begin > 1) {
    const std::int64_t middle = begin + (end - begin) / 2;
    (offsetAt(middle) == offset ? begin : end) = middle;
  }
  return end;
}

bool isZoneLetter(char letter) {
  return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
         (letter >= '0' && letter <= '9') || letter == '_' || letter == '+' || letter == '-';
}

/// Whether `name` has the form of a zone name instead of a file path.
bool hasZoneForm(std::string_view name) {
  // Zones with leap seconds, which clocks do not show, and aliases of the machine's own setting.
  constexpr std::array<std::string_view, 5> others{
      "right/", "posix/", "posixrules", "localtime", "Factory"};
  if (std::ranges::any_of(others, [&](std::string_view it) { return name.starts_with(it); })) {
    return false;
  }
  bool inPart = false;
  for (const char letter : name) {
    if (letter != '/' && !isZoneLetter(letter)) return false;
    if (letter == '/' && !inPart) return false;
    inPart = letter != '/';
  }
  return inPart;
}

}  // namespace

std::optional<TimeZone> TimeZone::named(std::string_view name) {
  if (!hasZoneForm(name)) return std::nullopt;
  constexpr std::string_view magic = "TZif";
  std::array<char, magic.size()> start{};
  std::ifstream file(System::zoneFolder() / name, std::ios::binary);
  if (!file.read(start.data(), start.size())) return std::nullopt;
  if (std::string_view(start.data(), start.size()) != magic) return std::nullopt;
  return TimeZone(name);
}

const std::vector<TimeZone::Change>& TimeZone::changesIn(std::int64_t span) {
  const auto found = known.find(span);
  if (found != known.end()) return found->second;
  const std::int64_t begin = span * spanLength;
  const std::int64_t end = begin + spanLength;
  const ZoneInForce zone(zoneName);
  std::vector<Change> changes{{.from = begin, .offset = offsetAt(begin)}};
  for (std::int64_t at = begin; at < end; at += step) {
    const std::int64_t next = at + step;
    while (offsetAt(next - 1) != changes.back().offset) {
      // The second before this step still had the previous offset.
      const std::int64_t from = std::max(at - 1, changes.back().from);
      const std::int64_t change = endOfOffset(changes.back().offset, from, next - 1);
      changes.push_back({.from = change, .offset = offsetAt(change)});
    }
  }
  return known.emplace(span, std::move(changes)).first->second;
}

Stamp TimeZone::stamp(std::int64_t moment) {
  if (moment < stretchBegin || moment >= stretchEnd) {
    const std::int64_t span = moment / spanLength - (moment % spanLength < 0 ? 1 : 0);
    const std::vector<Change>& changes = changesIn(span);
    const auto next = std::ranges::upper_bound(changes, moment, {}, &Change::from);
    stretchBegin = (next - 1)->from;
    stretchEnd = next == changes.end() ? (span + 1) * spanLength : next->from;
    stretchOffset = (next - 1)->offset;
  }
  return {.moment = moment, .offset = stretchOffset};
}
