#pragma once
// A whole export as a text that is taken piece by piece, because it may be larger than memory.

#include "sample/export/ExportWriter.h"
#include "sample/life/History.h"

#include <cstdint>
#include <string_view>

/// The "export.xml" of one person's life. A piece holds a few days; the workouts come at the end.
class ExportDocument {
public:
  /// The document is made at the moment and on the clocks of `exported`, by a phone that measures
  /// in `units`. `person` and `progress` outlive it.
  ExportDocument(const Person& person, const HistoryOptions& options, Stamp exported,
                 UnitSystem units, Progress& progress);

  /// The next piece, valid until the next call; empty after the last.
  std::string_view nextPiece();

  std::int64_t records() const { return writer.records(); }    ///< so far
  std::int64_t workouts() const { return writer.workouts(); }  ///< so far

private:
  History history;
  ExportWriter writer;
  bool taken = false;   ///< a piece, so that what the writer holds is old
  bool closed = false;  ///< nothing more will be written
};
