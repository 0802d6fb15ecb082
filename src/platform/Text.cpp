#include "platform/Text.h"
#include "platform/UTF8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>

bool isASCII(std::string_view bytes) {
  unsigned char all = 0;
  for (const char byte : bytes) all |= static_cast<unsigned char>(byte);
  return all < 0x80;
}

std::string repaired(std::string_view bytes) {
  if (isASCII(bytes)) return std::string(bytes);
  std::string text;
  std::size_t copied = 0;
  for (std::size_t position = 0; position < bytes.size();) {
    const UTF8::Run run = UTF8::runAt(bytes.substr(position));
    if (run.form != UTF8::Form::whole) {
      text.append(bytes.substr(copied, position - copied)).append(UTF8::replacement);
      copied = position + run.length;
    }
    position += run.length;
  }
  return text.append(bytes.substr(copied));
}

std::string utf8(char32_t codePoint) {
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (surrogate || codePoint > 0x10FFFF) return std::string(UTF8::replacement);
  const auto continuation = [codePoint](int shift) {
    return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
  };
  if (codePoint < 0x80) return {static_cast<char>(codePoint)};
  if (codePoint < 0x800) return {static_cast<char>(0xC0 | (codePoint >> 6)), continuation(0)};
  if (codePoint < 0x10000) {
    return {static_cast<char>(0xE0 | (codePoint >> 12)), continuation(6), continuation(0)};
  }
  return {static_cast<char>(0xF0 | (codePoint >> 18)),
          continuation(12),
          continuation(6),
          continuation(0)};
}

std::string_view trimmedBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

namespace {

constexpr std::array<std::string_view, 25> whitespace{
    "\t",           "\n",           "\v",           "\f",           "\r",           " ",
    "\xC2\x85",     "\xC2\xA0",     "\xE1\x9A\x80", "\xE2\x80\x80", "\xE2\x80\x81", "\xE2\x80\x82",
    "\xE2\x80\x83", "\xE2\x80\x84", "\xE2\x80\x85", "\xE2\x80\x86", "\xE2\x80\x87", "\xE2\x80\x88",
    "\xE2\x80\x89", "\xE2\x80\x8A", "\xE2\x80\xA8", "\xE2\x80\xA9", "\xE2\x80\xAF", "\xE2\x81\x9F",
    "\xE3\x80\x80"};

}  // namespace

std::string_view trimmedWhitespace(std::string_view text) {
  const auto leads = [&text](std::string_view space) { return text.starts_with(space); };
  const auto trails = [&text](std::string_view space) { return text.ends_with(space); };
  for (auto space = whitespace.begin(); space != whitespace.end();) {
    space = std::ranges::find_if(whitespace, leads);
    if (space != whitespace.end()) text.remove_prefix(space->size());
  }
  for (auto space = whitespace.begin(); space != whitespace.end();) {
    space = std::ranges::find_if(whitespace, trails);
    if (space != whitespace.end()) text.remove_suffix(space->size());
  }
  return text;
}

std::string shortened(std::string_view text, std::size_t size) {
  if (text.size() <= size) return std::string(text);
  constexpr std::string_view ellipsis = "\xE2\x80\xA6";
  const auto continues = [text](std::size_t index) {
    return (static_cast<std::uint8_t>(text[index]) & 0xC0U) == 0x80U;
  };
  std::size_t end = size - ellipsis.size();
  while (end > 0 && continues(end)) --end;
  return std::string(text.substr(0, end)).append(ellipsis);
}

std::string filled(std::string_view pattern, std::initializer_list<std::string_view> values) {
  std::string text;
  for (std::size_t position = 0; position < pattern.size(); ++position) {
    const bool mark = pattern[position] == '{' && position + 2 < pattern.size() &&
                      pattern[position + 2] == '}' && pattern[position + 1] >= '0';
    const auto index = mark ? static_cast<std::size_t>(pattern[position + 1] - '0') : 0;
    if (mark && index < values.size()) {
      text += values.begin()[index];
      position += 2;
    } else {
      text += pattern[position];
    }
  }
  return text;
}

std::string fixedDecimals(double value, int digits) {
  if (std::isnan(value)) return "nan";  // printf may give it a sign
  const int length = std::snprintf(nullptr, 0, "%.*f", digits, value);
  std::string text(static_cast<std::size_t>(length), '\0');
  std::snprintf(text.data(), text.size() + 1, "%.*f", digits, value);
  return text;
}

std::string lowerCased(std::string_view text) {
  std::string lowered(text);
  for (char& letter : lowered) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return lowered;
}
