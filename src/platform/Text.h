#pragma once
// Text as bytes: UTF-8 repair, trimming, sentence templates and lines.

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

/// Whether all `bytes` are below 128. Such text is valid UTF-8.
bool isASCII(std::string_view bytes);

/// `bytes` as valid UTF-8. Each ill-formed run, as long as it could begin a character, becomes one
/// U+FFFD. Valid text is returned unchanged.
std::string repaired(std::string_view bytes);

/// The UTF-8 form of one code point; U+FFFD for a surrogate or a number above U+10FFFF.
std::string utf8(char32_t codePoint);

/// `text` without leading and trailing spaces (U+0020) and tabs (U+0009); other white space stays.
std::string_view trimmedBlanks(std::string_view text);

/// `text`, valid UTF-8, without leading and trailing white space and line breaks of any kind:
/// Unicode's, including no-break spaces.
std::string_view trimmedWhitespace(std::string_view text);

/// `text`, valid UTF-8, in at most `size` bytes (3 or more). A longer text is cut between two
/// characters and ends with "…"; the result still fits.
std::string shortened(std::string_view text, std::size_t size);

/// `pattern` with every "{0}", "{1}", ... replaced by the value of that index. Values are copied as
/// they are; marks inside them are not replaced. A mark without a value stays.
std::string filled(std::string_view pattern, std::initializer_list<std::string_view> values);

/// printf's "%.<digits>f" of `value`. The decimal mark is a point because the process keeps the C
/// locale. "inf", "-inf" or "nan" when it is not finite.
std::string fixedDecimals(double value, int digits);

/// `text` with the letters A to Z in lower case; other characters stay.
std::string lowerCased(std::string_view text);

/// The results of `part` for each element (by default the element itself), with `separator` between
/// them.
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

/// A text built line by line.
class Lines {
public:
  /// Appends one line made of all `parts`; a part with a line feed spans lines.
  template <typename... Parts>
  void add(const Parts&... parts) {
    if (!first) text += '\n';
    first = false;
    (text.append(parts), ...);
  }

  /// All lines, separated by line feeds, without one at the end.
  const std::string& joined() const { return text; }

private:
  std::string text;
  bool first = true;
};
