#include "sample/flaws/RewrittenElements.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>

namespace {

constexpr std::string_view statistics = "  <WorkoutStatistics ";

/// Renames the second stamp of each WorkoutStatistics to the name of the first.
void repeatStarts(std::string& element) {
  constexpr std::string_view end = " endDate=";
  for (std::size_t at = element.find(statistics); at != std::string::npos;
       at = element.find(statistics, at + 1)) {
    const std::size_t attribute = element.find(end, at);
    element.replace(attribute, end.size(), " startDate=");
  }
}

/// Adds `first` at the start and `last` at the end of the attribute's value, if it exists.
void frame(std::string& element, std::string_view attribute, std::string_view first,
           std::string_view last) {
  const std::string opening = " " + std::string(attribute) + "=\"";
  const std::size_t begin = element.find(opening);
  if (begin == std::string::npos) return;
  const std::size_t value = begin + opening.size();
  element.insert(element.find('"', value), last);
  element.insert(value, first);
}

/// Repeats the statistics of the workout as those of its only activity.
void addActivity(std::string& element) {
  const std::size_t begin = element.find(statistics);
  if (begin == std::string::npos) return;
  const std::size_t end = element.find(" </Workout>");
  std::string activity = "  <WorkoutActivity uuid=\"7E0C0A7E-5B1D-4C3A-9F57-2A8D6C1B4E90\">\n";
  activity.append(element, begin, end - begin).append("  </WorkoutActivity>\n");
  element.insert(end, activity);
}

/// Replaces the device's address with a memory address, as phones write it.
void readdress(std::string& element, Random& random) {
  constexpr std::string_view before = "HKDevice: 0x";
  const std::size_t found = element.find(before);
  if (found == std::string::npos) return;
  const std::size_t begin = found + before.size();
  const std::size_t end = element.find_first_not_of("0123456789abcdef", begin);
  constexpr std::uint64_t heap = 0x280000000;
  const std::uint64_t address = heap + 64 * (random.next() % (1U << 22U));
  std::array<char, 16> digits{};
  const char* const last =
      std::to_chars(digits.data(), digits.data() + digits.size(), address, 16).ptr;
  element.replace(begin, end - begin, digits.data(), static_cast<std::size_t>(last - &digits[0]));
}

/// The share of elements with a flaw that only some elements have.
constexpr double share = 1.0 / 16;

}  // namespace

RewrittenElements::RewrittenElements(const FlawSet& flaws, std::uint64_t seed)
    : flaws(flaws),
      addresses(Random(seed).fork("device addresses")),
      control(Random(seed).fork("control characters")),
      repetition(Random(seed).fork("eight times")) {}

std::string RewrittenElements::rewritten(std::string element) {
  const bool isRecord = element.starts_with(" <Record");
  const bool isWorkout = element.starts_with(" <Workout");
  if (flaws.contains(Flaw::deviceAddresses)) readdress(element, addresses);
  if (flaws.contains(Flaw::workoutActivities) && isWorkout) addActivity(element);
  if (flaws.contains(Flaw::repeatedAttributes) && isWorkout) repeatStarts(element);
  if (flaws.contains(Flaw::controlCharacters) && isRecord && control.chance(share)) {
    frame(element, "sourceName", "\v", "&#11;");
    frame(element, "device", "&#x1;", "\x02");
  }
  if (flaws.contains(Flaw::eightTimes) && isRecord && repetition.chance(share)) {
    const std::string once = element;
    for (int more = 1; more < 8; ++more) element += once;
  }
  return element;
}
