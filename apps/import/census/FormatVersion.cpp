#include "import/census/FormatVersion.h"

#include <charconv>
#include <cstddef>

namespace {

/// A document type takes about ten kilobytes.
constexpr std::size_t longestBeginning = 64UL << 10;

}  // namespace

void FormatVersion::look(std::string_view bytes) {
  beginning.append(bytes.substr(0, longestBeginning - beginning.size()));
}

std::optional<int> FormatVersion::found() const {
  constexpr std::string_view label = "<!-- HealthKit Export Version: ";
  constexpr std::string_view end = " -->";
  constexpr std::size_t mostDigits = 3;
  const std::string_view prolog =
      std::string_view(beginning).substr(0, beginning.find("<HealthData"));
  const std::size_t place = prolog.find(label);
  if (place == std::string_view::npos) return std::nullopt;
  const std::string_view rest = prolog.substr(place + label.size());
  const std::string_view digits = rest.substr(0, rest.find_first_not_of("0123456789"));
  if (digits.empty() || digits.size() > mostDigits) return std::nullopt;
  if (!rest.substr(digits.size()).starts_with(end)) return std::nullopt;
  int number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return number;
}
