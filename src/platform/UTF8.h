#pragma once
// Which bytes make a character in UTF-8.

#include <cstddef>
#include <string_view>

namespace UTF8 {

/// U+FFFD, which stands for what is no character.
inline constexpr std::string_view replacement = "\xEF\xBF\xBD";

enum class Form {
  whole,      ///< one character
  illFormed,  ///< the longest run that could have begun a character
  cut         ///< the same, where only the end of the bytes keeps it from being one
};

struct Run {
  std::size_t length;  ///< >= 1
  Form form;

  bool operator==(const Run&) const = default;
};

/// What stands at the start of `bytes`, which are not empty.
Run runAt(std::string_view bytes);

}  // namespace UTF8
