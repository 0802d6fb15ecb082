#include "import/xml/XmlText.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// No reference needs so many digits. A longer one is left to the parser, because the buffer must
/// be bounded.
constexpr std::size_t longestReference = 64;

constexpr std::array<bool, 256> notableBytes = [] {
  std::array<bool, 256> notable{};
  for (std::size_t byte = 0; byte < notable.size(); ++byte) {
    const bool allowedControl = byte == '\t' || byte == '\n' || byte == '\r';
    notable[byte] = (byte < 0x20 && !allowedControl) || byte >= 0x80 || byte == '&';
  }
  return notable;
}();

constexpr std::uint64_t eightTimes(std::uint8_t byte) { return 0x0101010101010101U * byte; }

/// Whether one of eight bytes is above 0x7F, below 0x20 or an ampersand.
bool anyNotable(const char* bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  const std::uint64_t ampersand = word ^ eightTimes('&');
  const std::uint64_t below = (word - eightTimes(0x20)) & ~word;
  const std::uint64_t equal = (ampersand - eightTimes(1)) & ~ampersand;
  return ((word | below | equal) & eightTimes(0x80)) != 0;
}

/// The first special position from `position` on; the size of `text` when there is none.
std::size_t notableFrom(std::string_view text, std::size_t position) {
  const char* const bytes = text.data();
  while (position < text.size()) {
    if (text.size() - position >= 8 && !anyNotable(bytes + position)) {
      position += 8;
    } else if (notableBytes[static_cast<std::uint8_t>(bytes[position])]) {
      return position;
    } else {
      ++position;
    }
  }
  return position;
}

constexpr bool isForbidden(std::uint32_t codePoint) {
  if (codePoint < 0x20) return codePoint != '\t' && codePoint != '\n' && codePoint != '\r';
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return surrogate || codePoint == 0xFFFE || codePoint == 0xFFFF || codePoint > 0x10FFFF;
}

enum class Verdict { keep, drop, replace, cut };

struct Piece {
  std::size_t length;  ///< >= 1
  Verdict verdict;
};

constexpr std::uint32_t digitValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<std::uint32_t>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<std::uint32_t>(digit - 'a' + 10);
  if (digit >= 'A' && digit <= 'F') return static_cast<std::uint32_t>(digit - 'A' + 10);
  return 16;
}

/// The reference at the start of `text`, which is an ampersand. In a CDATA section "&#11;" would be
/// plain text, but is dropped too: exports have no such sections.
Piece referenceAt(std::string_view text) {
  constexpr Piece noCharacter{1, Verdict::keep};
  constexpr Piece undecided{1, Verdict::cut};
  if (text.size() == 1) return undecided;
  if (text[1] != '#') return noCharacter;
  if (text.size() == 2) return undecided;

  const bool hexadecimal = text[2] == 'x';
  const std::uint32_t base = hexadecimal ? 16 : 10;
  const std::size_t firstDigit = hexadecimal ? 3 : 2;
  std::uint32_t codePoint = 0;
  for (std::size_t index = firstDigit; index < longestReference; ++index) {
    if (index == text.size()) return undecided;
    if (text[index] == ';' && index > firstDigit) {
      return {index + 1, isForbidden(codePoint) ? Verdict::drop : Verdict::keep};
    }
    const std::uint32_t digit = digitValue(text[index]);
    if (digit >= base) return noCharacter;
    if (codePoint <= 0x10FFFF) codePoint = codePoint * base + digit;
  }
  return noCharacter;
}

/// The count of bytes after `lead`, and the range of the first of them. That range excludes
/// overlong forms, surrogates and code points above U+10FFFF.
struct Lead {
  std::size_t following;  ///< 0 when `lead` does not begin a multi-byte character
  std::uint8_t lowest = 0x80;
  std::uint8_t highest = 0xBF;
};

constexpr Lead leadOf(std::uint8_t byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {0};
}

/// The multi-byte character, or else the ill-formed run, at the start of `text`.
Piece characterAt(std::string_view text) {
  const auto byteAt = [text](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const Lead lead = leadOf(byteAt(0));
  if (lead.following == 0) return {1, Verdict::replace};
  for (std::size_t index = 1; index <= lead.following; ++index) {
    if (index == text.size()) return {index, Verdict::cut};
    const std::uint8_t lowest = index == 1 ? lead.lowest : 0x80;
    const std::uint8_t highest = index == 1 ? lead.highest : 0xBF;
    if (byteAt(index) < lowest || byteAt(index) > highest) return {index, Verdict::replace};
  }
  const bool noncharacter = byteAt(0) == 0xEF && byteAt(1) == 0xBF && byteAt(2) >= 0xBE;
  return {lead.following + 1, noncharacter ? Verdict::drop : Verdict::keep};
}

Piece pieceAt(std::string_view text) {
  const auto byte = static_cast<std::uint8_t>(text.front());
  if (byte == '&') return referenceAt(text);
  if (byte >= 0x80) return characterAt(text);
  return {1, Verdict::drop};
}

}  // namespace

std::string_view XmlText::cleaned(std::string_view piece) {
  if (!cut.empty()) {
    rejoined.assign(cut).append(piece);
    cut.clear();
    piece = rejoined;
  }
  if (atStart && piece.size() < byteOrderMark.size() && byteOrderMark.starts_with(piece)) {
    cut = piece;
    return {};
  }
  if (atStart && piece.starts_with(byteOrderMark)) piece.remove_prefix(byteOrderMark.size());
  atStart = false;

  output.clear();
  std::size_t copied = 0;
  std::size_t position = notableFrom(piece, 0);
  while (position < piece.size()) {
    const Piece found = pieceAt(piece.substr(position));
    if (found.verdict == Verdict::cut) {
      cut = piece.substr(position);
      piece = piece.substr(0, position);
      break;
    }
    if (found.verdict != Verdict::keep) {
      output.append(piece.substr(copied, position - copied));
      if (found.verdict == Verdict::replace) output += replacement;
      ++(found.verdict == Verdict::replace ? replaced : dropped);
      copied = position + found.length;
    }
    position = notableFrom(piece, position + found.length);
  }
  if (copied == 0) return piece;
  return output.append(piece.substr(copied));
}

std::string_view XmlText::rest() {
  if (cut.empty() || cut.front() == '&') return cut;
  cut.clear();
  ++replaced;
  return replacement;
}
