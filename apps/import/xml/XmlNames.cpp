#include "import/xml/XmlNames.h"

XmlNames::Verdict XmlNames::use(std::string_view name, std::size_t position) {
  if (position < last.size() && last[position] == name) return Verdict::good;
  if (name.size() > longest) return Verdict::tooLong;
  auto found = known.find(name);
  if (found == known.end()) {
    if (known.size() == most) return Verdict::tooMany;
    found = known.emplace(name).first;  // a set's elements do not move
  }
  if (position >= last.size()) last.resize(position + 1);
  last[position] = *found;
  return Verdict::good;
}
