#include "import/database/RunTally.h"

#include <cstddef>

void RunTally::met(std::string_view day) {
  if (!firstDay || day < *firstDay) firstDay = day;
  if (!lastDay || day > *lastDay) lastDay = day;
}

void RunTally::count(std::string_view element) {
  constexpr std::size_t mostNames = 50;
  const auto found = notStored.find(element);
  if (found != notStored.end()) {
    ++found->second;
  } else if (notStored.size() < mostNames) {
    notStored.emplace(element, 1);
  } else {
    ++others;
  }
}

void RunTally::skip(std::string_view reason, long long line) {
  const auto found = skipped.find(reason);
  if (found != skipped.end()) {
    ++found->second.count;
  } else {
    skipped.emplace(reason, Skipped{.count = 1, .firstLine = line});
  }
}
