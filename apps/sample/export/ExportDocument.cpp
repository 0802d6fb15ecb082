#include "sample/export/ExportDocument.h"

#include <cstddef>

ExportDocument::ExportDocument(const Person& person, const HistoryOptions& options, Stamp exported,
                               UnitSystem units, Progress& progress)
    : history(person, options), writer(person, units, progress) {
  writer.open(exported);
}

std::string_view ExportDocument::nextPiece() {
  constexpr std::size_t worthwhile = 65536;
  // The first call keeps the opening. Every later call begins a new piece.
  if (taken) writer.clear();
  taken = true;
  while (!closed && writer.text().size() < worthwhile) {
    closed = !history.tellNextDay(writer);
    if (closed) writer.close();
  }
  return writer.text();
}
