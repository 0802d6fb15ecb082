#pragma once
// Skips the document type declaration, which is never parsed and may be broken.

#include <cstddef>
#include <string>
#include <string_view>

/// Replaces the document type declaration with blanks and passes everything else.
///
/// The declaration is not interpreted, so none of its entities can ever expand. Its own punctuation
/// does not show its end: exports of 2022 have an ATTLIST in it that is never closed. The
/// declaration ends where the root element begins. That is the first "<HealthData" followed by a
/// blank, "/" or ">", and preceded, apart from blanks, by the ">" that ends a declaration or a
/// comment (or by the "]", if that ">" is missing too). Inside a declaration the root's name has no
/// "<", and inside quoted texts neither character precedes it.
class Prolog {
public:
  /// The result for `bytes`, text without forbidden characters; valid until the next call and while
  /// `bytes` is valid. Line feeds stay, and every other replaced character becomes one blank, so
  /// that later lines and columns are those of the text. An incomplete start of a tag at the end is
  /// buffered until more follows.
  std::string_view passed(std::string_view bytes);

  bool over() const { return state == State::over; }  ///< the root element has begun

private:
  enum class State { between, markup, instruction, comment, doctype, over };

  void take(char byte);
  void takeMarkup();
  void takeDoctype(char byte);
  void blank(std::string_view bytes);

  State state = State::between;
  std::string held;         ///< the start of an incomplete tag
  std::string output;       ///< of the current call
  std::size_t closers = 0;  ///< consecutive "-" or "?" that may end the comment or instruction
  char lastInDoctype = 0;   ///< the last non-blank character of the declaration
};
