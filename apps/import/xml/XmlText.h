#pragma once
// Removes or replaces bytes that are not valid in XML text.

#include <cstdint>
#include <string>
#include <string_view>

/// Cleans a document piece by piece, so that one invalid byte does not make all of it unreadable.
///
/// Characters that XML 1.0 forbids are dropped, together with references to them: control
/// characters except tab, line feed and carriage return, and U+FFFE and U+FFFF. Ill-formed UTF-8
/// becomes U+FFFD, one for each longest run that could begin a character. A byte order mark at the
/// start is removed. Everything else stays, including malformed references, which the parser
/// refuses. Lines stay the same, columns do not.
class XmlText {
public:
  /// `piece` cleaned. A character or reference cut by its end is buffered for the next call. Valid
  /// until the next call and while `piece` is valid: clean text is not copied.
  std::string_view cleaned(std::string_view piece);

  /// The rest after the last piece; no call may follow.
  std::string_view rest();

  std::int64_t droppedCharacters() const { return dropped; }
  std::int64_t replacedSequences() const { return replaced; }

private:
  bool atStart = true;
  std::string cut;       ///< the incomplete end of the last piece
  std::string rejoined;  ///< `cut` and the current piece
  std::string output;
  std::int64_t dropped = 0;
  std::int64_t replaced = 0;
};
