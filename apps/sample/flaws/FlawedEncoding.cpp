#include "sample/flaws/FlawedEncoding.h"

#include <cstddef>
#include <cstdint>

namespace {

/// Removes the first character of `text`, which is UTF-8, and returns it.
std::uint32_t taken(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  std::uint32_t letter = length == 1 ? lead : lead & (0x7FU >> length);
  for (const char next : text.substr(1, length - 1)) {
    letter = letter << 6U | (static_cast<unsigned char>(next) & 0x3FU);
  }
  text.remove_prefix(length);
  return letter;
}

/// Appends two bytes, little-endian.
void appendUnit(std::string& text, std::uint32_t unit) {
  text += static_cast<char>(unit & 0xFFU);
  text += static_cast<char>(unit >> 8U & 0xFFU);
}

void appendUTF16(std::string& text, std::uint32_t letter) {
  if (letter < 0x10000) {
    appendUnit(text, letter);
    return;
  }
  appendUnit(text, 0xD800 + ((letter - 0x10000) >> 10U));
  appendUnit(text, 0xDC00 + ((letter - 0x10000) & 0x3FFU));
}

void appendWindows1252(std::string& text, std::uint32_t letter) {
  constexpr std::uint32_t apostrophe = 0x2019;  // as in the phones' names for their owners
  if (letter == apostrophe) {
    text += '\x92';
  } else if (letter < 0x80 || (letter >= 0xA0 && letter <= 0xFF)) {
    text += static_cast<char>(letter);
  } else {
    text += '?';
  }
}

}  // namespace

std::string_view FlawedEncoding::nameOf(const FlawSet& flaws) {
  if (flaws.contains(Flaw::utf16) || flaws.contains(Flaw::utf16Mark)) return "UTF-16";
  if (flaws.contains(Flaw::otherEncoding)) return "windows-1252";
  return "UTF-8";
}

std::string FlawedEncoding::encoded(std::string text, const FlawSet& flaws, bool isFirst) {
  const bool isUTF16 = nameOf(flaws) == "UTF-16";
  if (!isUTF16 && !flaws.contains(Flaw::otherEncoding)) return text;
  std::string result;
  if (isFirst && flaws.contains(Flaw::utf16Mark)) appendUnit(result, 0xFEFF);
  for (std::string_view rest = text; !rest.empty();) {
    const std::uint32_t letter = taken(rest);
    if (isUTF16) {
      appendUTF16(result, letter);
    } else {
      appendWindows1252(result, letter);
    }
  }
  return result;
}
