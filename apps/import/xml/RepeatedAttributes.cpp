#include "import/xml/RepeatedAttributes.h"

#include <algorithm>
#include <array>

namespace {

/// More than the longest tag of an export and than the parser's own limit: the parser refuses the
/// rest.
constexpr std::size_t mostHeldBack = 256UL << 10;

/// An export's tags have at most 15 attributes. A tag with more is passed unchanged.
constexpr std::size_t mostAttributes = 64;

constexpr std::size_t none = std::string_view::npos;

constexpr bool isBlank(char letter) {
  return letter == ' ' || letter == '\t' || letter == '\n' || letter == '\r';
}

/// Whether `reference` is valid between "&" and ";".
bool isReference(std::string_view reference) {
  constexpr std::array<std::string_view, 5> names{"amp", "lt", "gt", "quot", "apos"};
  if (std::ranges::find(names, reference) != names.end()) return true;
  const bool hexadecimal = reference.starts_with("#x");
  const std::string_view digits = reference.substr(hexadecimal ? 2 : reference.starts_with("#"));
  constexpr std::size_t mostDigits = 7;
  return reference.starts_with("#") && !digits.empty() && digits.size() <= mostDigits &&
         digits.find_first_not_of(hexadecimal ? "0123456789abcdefABCDEF" : "0123456789") == none;
}

/// Whether `value` is valid between quotation marks.
bool isWellFormed(std::string_view value) {
  if (value.find('<') != none) return false;
  for (std::size_t at = value.find('&'); at != none; at = value.find('&', at + 1)) {
    const std::size_t end = value.find(';', at);
    if (end == none || !isReference(value.substr(at + 1, end - at - 1))) return false;
  }
  return true;
}

/// The end of the markup that begins at `open` with `start` and ends with `end`; `none` when it is
/// incomplete.
std::size_t endOf(std::string_view text, std::size_t open, std::string_view start,
                  std::string_view end) {
  const std::size_t found = text.find(end, open + start.size());
  return found == none ? none : found + end.size();
}

/// The end of the comment, instruction, end tag or section that begins at `open`; `none` when it is
/// incomplete.
std::size_t otherMarkupEnd(std::string_view text, std::size_t open) {
  constexpr std::string_view comment = "<!--";
  constexpr std::string_view section = "<![CDATA[";
  const std::string_view markup = text.substr(open);
  if (markup.starts_with(comment)) return endOf(text, open, comment, "-->");
  if (markup.starts_with(section)) return endOf(text, open, section, "]]>");
  if (comment.starts_with(markup) || section.starts_with(markup)) return none;
  return endOf(text, open, "<", markup.starts_with("<?") ? "?>" : ">");
}

}  // namespace

std::string_view RepeatedAttributes::removed(std::string_view piece) {
  if (givenUp) return piece;
  isCopied = !cut.empty();
  std::string_view text = piece;
  if (isCopied) {
    edited = cut.append(piece);
    text = edited;
  }
  std::size_t complete = completePart(text);
  if (text.size() - complete > mostHeldBack) {
    givenUp = true;
    complete = text.size();
  }
  cut = text.substr(complete);
  return isCopied ? std::string_view(edited).substr(0, complete) : text.substr(0, complete);
}

std::string_view RepeatedAttributes::rest() { return cut; }

/// The length of `text` up to an incomplete markup at its end. Repairs the tags in it.
std::size_t RepeatedAttributes::completePart(std::string_view text) {
  std::size_t end = 0;
  while (true) {
    const std::size_t open = text.find('<', end);
    if (open == none) return text.size();
    if (open + 1 == text.size()) return open;
    const char next = text[open + 1];
    const bool startTag = next != '!' && next != '?' && next != '/';
    end = startTag ? startTagEnd(text, open) : otherMarkupEnd(text, open);
    if (end == none) return open;
  }
}

/// The end of the start tag that begins at `open`; `none` when it is incomplete.
std::size_t RepeatedAttributes::startTagEnd(std::string_view text, std::size_t open) {
  attributes.clear();
  repeats = false;
  sound = true;
  std::size_t begin = open + 1;  // of the attribute's name, then the end of its value
  std::size_t nameEnd = begin;
  for (std::size_t at = begin; at < text.size(); ++at) {
    const char letter = text[at];
    if (letter == '>') {
      if (repeats && sound) repair(text);
      return at + 1;
    }
    if (letter == '"' || letter == '\'') {
      const std::size_t close = text.find(letter, at + 1);
      if (close == none) return none;
      note(text, {.begin = begin, .nameEnd = nameEnd, .quote = at, .end = close + 1});
      begin = nameEnd = at = close;
    } else if (letter != '=' && !isBlank(letter)) {
      // The first letter after a blank or a value begins a name.
      if (nameEnd != at) begin = at;
      nameEnd = at + 1;
    }
  }
  return none;
}

/// Stores the attribute, and records whether an earlier one in the tag has its name.
void RepeatedAttributes::note(std::string_view text, const Attribute& attribute) {
  if (attributes.size() == mostAttributes) return;
  const auto nameOf = [text](const Attribute& any) {
    return text.substr(any.begin, any.nameEnd - any.begin);
  };
  if (std::ranges::find(attributes, nameOf(attribute), nameOf) != attributes.end()) {
    repeats = true;
    std::string_view sign = text.substr(attribute.nameEnd, attribute.quote - attribute.nameEnd);
    while (!sign.empty() && isBlank(sign.front())) sign.remove_prefix(1);
    while (!sign.empty() && isBlank(sign.back())) sign.remove_suffix(1);
    const std::size_t value = attribute.quote + 1;
    sound = sound && sign == "=" && isBlank(text[attribute.begin - 1]) &&
            isWellFormed(text.substr(value, attribute.end - 1 - value));
  }
  attributes.push_back(attribute);
}

void RepeatedAttributes::repair(std::string_view text) {
  if (!isCopied) edited = text;
  isCopied = true;
  constexpr std::string_view start = "startDate";
  constexpr std::string_view end = "endDate";
  std::vector<std::string_view> names;
  for (const Attribute& attribute : attributes) {
    names.push_back(text.substr(attribute.begin, attribute.nameEnd - attribute.begin));
  }
  bool hasEnd = std::ranges::find(names, end) != names.end();
  for (std::size_t index = 1; index < attributes.size(); ++index) {
    const auto before = names.begin() + static_cast<std::ptrdiff_t>(index);
    if (std::find(names.begin(), before, names[index]) == before) continue;
    const Attribute& attribute = attributes[index];
    ++repeated;
    if (names[index] == start && !hasEnd) {
      std::fill_n(edited.begin() + static_cast<std::ptrdiff_t>(attribute.begin), start.size(), ' ');
      end.copy(&edited[attribute.begin], end.size());
      hasEnd = true;
    } else {
      std::fill(edited.begin() + static_cast<std::ptrdiff_t>(attribute.begin),
                edited.begin() + static_cast<std::ptrdiff_t>(attribute.end),
                ' ');
    }
  }
}
