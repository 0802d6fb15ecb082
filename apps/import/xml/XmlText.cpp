#include "import/xml/XmlText.h"
#include "platform/UTF8.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

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

/// The multi-byte character, or else the ill-formed run, at the start of `text`.
Piece characterAt(std::string_view text) {
  const UTF8::Run run = UTF8::runAt(text);
  if (run.form == UTF8::Form::cut) return {run.length, Verdict::cut};
  if (run.form == UTF8::Form::illFormed) return {run.length, Verdict::replace};
  const bool noncharacter = text.starts_with("\xEF\xBF\xBE") || text.starts_with("\xEF\xBF\xBF");
  return {run.length, noncharacter ? Verdict::drop : Verdict::keep};
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
      if (found.verdict == Verdict::replace) output += UTF8::replacement;
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
  return UTF8::replacement;
}
