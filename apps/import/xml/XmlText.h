#pragma once
// Bytes in, text that XML allows out.

#include <cstdint>
#include <string>
#include <string_view>

/// Cleans a document piece by piece, so that one stray byte does not cost the whole of it.
///
/// Characters that XML 1.0 forbids (control characters but tab, line feed and carriage return;
/// U+FFFE, U+FFFF) are dropped, and so are character references to them. Ill-formed UTF-8 becomes
/// U+FFFD, one for each longest run that could have begun a character. A byte order mark at the
/// start goes. All else stays, malformed references too, which are the parser's to refuse. Lines
/// stay what they were, columns do not.
class XmlText {
public:
  /// `piece` cleaned, less a character or reference that its end cuts, which the next call takes
  /// up. Valid until the next call and as long as `piece` is: clean text is not copied.
  std::string_view cleaned(std::string_view piece);

  /// What the last piece left over; after it nothing follows.
  std::string_view rest();

  std::int64_t droppedCharacters() const { return dropped; }
  std::int64_t replacedSequences() const { return replaced; }

private:
  bool atStart = true;
  std::string cut;       ///< what the end of the last piece cut
  std::string rejoined;  ///< that and the present piece
  std::string output;
  std::int64_t dropped = 0;
  std::int64_t replaced = 0;
};
