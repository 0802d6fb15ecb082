#pragma once
// A flawed export as found in practice, made from the clean one.

#include "sample/export/ExportDocument.h"
#include "sample/flaws/Flaws.h"
#include "sample/flaws/RewrittenElements.h"

#include <cstdint>
#include <string>
#include <string_view>

/// The text of the clean export with flaws, piece by piece. A piece of the clean export contains
/// only whole elements. Without flaws it is unchanged.
class FlawedDocument {
public:
  /// `added` are further elements for the end of the document. `clean` must outlive this object.
  FlawedDocument(ExportDocument& clean, FlawSet flaws, std::uint64_t seed, std::string added);

  /// The next piece, valid until the next call; empty after the last.
  std::string_view nextPiece();

private:
  void take(std::string_view element);

  ExportDocument& clean;
  FlawSet flaws;
  RewrittenElements elements;
  std::string added;
  std::string written;
  bool begun = false;
};
