#pragma once
// In which encoding a document says or shows that it is.

#include <cstddef>
#include <string>
#include <string_view>

/// Refuses documents in another encoding than UTF-8, whose texts would be stored garbled: UTF-16
/// and UTF-32, with a byte order mark or without, and those whose XML declaration names another
/// one. The refusal names an encoding only if it is well known. US-ASCII is a part of UTF-8 and
/// taken.
class XmlEncoding {
public:
  /// The next bytes of the document, unchanged. Its beginning is held back until it says enough;
  /// then it comes at once, or Failure is thrown. Valid until the next call and as long as
  /// `bytes` are.
  std::string_view checked(std::string_view bytes);

  /// What is held back still; after it nothing follows.
  std::string_view rest();

private:
  bool decides() const;

  bool decided = false;
  std::string start;  ///< until it is decided, and for the call that does
};
