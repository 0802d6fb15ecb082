#pragma once
// Skips the document type declaration, which is never read and may be broken.

#include <cstddef>
#include <string>
#include <string_view>

/// Turns the document type declaration into blanks and passes all else.
///
/// The declaration is not interpreted, so that no entity of it can ever expand, and its own
/// punctuation says nothing about where it ends: exports of 2022 have an ATTLIST in it that never
/// closes. It ends where the root element begins: at the first "<HealthData" with a blank, "/" or
/// ">" behind it whose last character before, blanks apart, is the ">" (or, that missing too, the
/// "]") which a declaration or a comment ends with. Inside a declaration the root is called
/// "HealthData" without "<", and inside its quoted texts neither stands before it.
class Prolog {
public:
  /// What `bytes`, of text that XML allows, become; valid until the next call and as long as they
  /// are. Line feeds stay, and there is one blank for every other character, so that lines and
  /// columns behind are those of the text. The start of a tag that ends with the bytes is held back
  /// until more of it is there.
  std::string_view passed(std::string_view bytes);

  bool over() const { return state == State::over; }  ///< the root element has begun

private:
  enum class State { between, markup, instruction, comment, doctype, over };

  void take(char byte);
  void takeMarkup();
  void takeDoctype(char byte);
  void blank(std::string_view bytes);

  State state = State::between;
  std::string held;         ///< of a tag that cannot be told yet
  std::string output;       ///< of the present call
  std::size_t closers = 0;  ///< "-" or "?" in a row that may end the comment or instruction
  char lastInDoctype = 0;   ///< the last character of the declaration that is no blank
};
