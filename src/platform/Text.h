#pragma once
// Text as bytes: UTF-8 repair, trimming, sentence templates and lines.

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

/// Whether `bytes` are all below 128, which makes them valid UTF-8.
bool isASCII(std::string_view bytes);

/// `bytes` as valid UTF-8: each longest ill-formed run that could have begun a character becomes
/// one U+FFFD. Valid text comes back unchanged.
std::string repaired(std::string_view bytes);

/// The UTF-8 form of one code point; U+FFFD for a surrogate or a number above U+10FFFF.
std::string utf8(char32_t codePoint);

/// `text` without the spaces (U+0020) and tabs (U+0009) at its ends; other white space stays.
std::string_view trimmedBlanks(std::string_view text);

/// `text` without white space and line breaks of any kind (Unicode's, no-break spaces included) at
/// its ends. `text` is valid UTF-8.
std::string_view trimmedWhitespace(std::string_view text);

/// `text`, which is valid UTF-8, where it takes at most `size` bytes (3 or more); else as much of
/// it as makes that many together with the "…" at its end, cut between two characters.
std::string shortened(std::string_view text, std::size_t size);

/// `pattern` with every "{0}", "{1}", ... replaced by the value of that index. Values are copied as
/// they are, never searched for further marks; a mark without a value stays.
std::string filled(std::string_view pattern, std::initializer_list<std::string_view> values);

/// printf's "%.<digits>f" of `value`; the decimal mark, where there is one, is a point, for the
/// process keeps the C locale. "inf", "-inf" or "nan" when it is not finite.
std::string fixedDecimals(double value, int digits);

/// `text` with the letters A to Z in lower case; all else stays.
std::string lowerCased(std::string_view text);

/// What `part` makes of each element (itself, when left out), with `separator` between two.
template <typename Range, typename Part = std::identity>
std::string joined(const Range& elements, std::string_view separator, Part part = {}) {
  std::string whole;
  bool first = true;
  for (const auto& element : elements) {
    if (!first) whole += separator;
    first = false;
    whole += std::invoke(part, element);
  }
  return whole;
}

/// A text under construction, line by line.
class Lines {
public:
  /// Appends one line made of all `parts`; a part with a line feed spans lines.
  template <typename... Parts>
  void add(const Parts&... parts) {
    if (!first) text += '\n';
    first = false;
    (text.append(parts), ...);
  }

  /// All lines, joined by single line feeds, none at the end.
  const std::string& joined() const { return text; }

private:
  std::string text;
  bool first = true;
};
