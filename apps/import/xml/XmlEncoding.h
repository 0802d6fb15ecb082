#pragma once
// The encoding of a document, as declared or as its bytes show it.

#include <cstddef>
#include <string>
#include <string_view>

/// Refuses documents in other encodings than UTF-8, whose texts would be stored garbled. These are
/// UTF-16 and UTF-32, with or without a byte order mark, and documents with another encoding in
/// their XML declaration. The error names the encoding only if it is well known. US-ASCII is a part
/// of UTF-8 and is accepted.
class XmlEncoding {
public:
  /// The next bytes of the document, unchanged. Its beginning is buffered until the encoding is
  /// known; then it is returned at once, or Failure is thrown. Valid until the next call and while
  /// `bytes` is valid.
  std::string_view checked(std::string_view bytes);

  /// The buffered rest; no call may follow.
  std::string_view rest();

private:
  bool decides() const;

  bool decided = false;
  std::string start;  ///< buffered until the decision, and during the deciding call
};
