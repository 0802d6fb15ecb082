#include "import/census/Check.h"
#include "import/census/FormatVersion.h"
#include "import/export/ExportReader.h"
#include "import/xml/ExportFile.h"
#include "platform/Phrase.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace {

constexpr Phrase interruptedCheck{"已中断：导出文件没有读完",
                                  "interrupted: the export was not read whole"};

CheckOutcome outcomeOf(const CheckOrder& order, const CheckSurroundings& surroundings) {
  const double began = surroundings.clock();
  ExportFile source(order.source, surroundings.interrupted);
  CensusTaker taker;
  ExportReader reader(taker);
  FormatVersion version;
  std::uint64_t bytes = 0;
  std::optional<Failure> failure;
  {
    Importer::Progress progress(surroundings.progress,
                                surroundings.progressKind,
                                surroundings.lang,
                                surroundings.clock,
                                source.size());
    try {
      source.readAll([&](std::string_view piece) {
        bytes += piece.size();
        version.look(piece);
        reader.feed(piece);
        progress.read(piece.size());
      });
      reader.finish();
    } catch (const Failure& error) {
      // A signal may have caused this failure by interrupting a read.
      heed(surroundings.interrupted);
      failure = error;
    }
  }
  Census census = taker.census();
  census.formatVersion = version.found();
  census.irregularities = reader.irregularities();
  census.beside = source.contents();
  census.bytes = bytes;
  // A clock that was set back would give a negative duration.
  census.seconds = std::max(surroundings.clock() - began, 0.0);
  census.complete = !failure;
  return {.census = std::move(census), .failure = std::move(failure)};
}

}  // namespace

CheckOutcome runCheck(const CheckOrder& order, const CheckSurroundings& surroundings) {
  try {
    return outcomeOf(order, surroundings);
  } catch (const Interruption&) {
    throw Interruption(interruptedCheck);
  }
}
