#pragma once
// A whole export as text in pieces, because it may be larger than memory.

#include "sample/export/ExportWriter.h"
#include "sample/life/History.h"

#include <cstdint>
#include <string_view>

/// The "export.xml" of one person's life. A piece contains a few days; the workouts come last.
class ExportDocument {
public:
  /// `exported` is the time of the export and the offset of its stamps; the phone's units are
  /// `units`. `person` and `progress` must outlive this object.
  ExportDocument(const Person& person, const HistoryOptions& options, Stamp exported,
                 UnitSystem units, Progress& progress);

  /// The next piece, valid until the next call; empty after the last.
  std::string_view nextPiece();

  std::int64_t records() const { return writer.records(); }    ///< so far
  std::int64_t workouts() const { return writer.workouts(); }  ///< so far

private:
  History history;
  ExportWriter writer;
  bool taken = false;   ///< a piece was returned, so the writer's text is old
  bool closed = false;  ///< nothing more will be written
};
