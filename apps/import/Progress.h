#pragma once
// How far an import has come: a bar on a terminal, a line a minute in a log.

#include "platform/Clock.h"
#include "platform/SummaryLang.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace Importer {

/// Shows the bytes read, the rate and the time left. Cheap enough to be told of every piece.
class Progress {
public:
  enum class Kind {
    terminal,  ///< one line that updates itself several times a second
    log        ///< a line of its own every minute
  };

  /// `out` outlives the progress. Without `total`, the bytes to come are not known.
  Progress(std::ostream& out, Kind kind, SummaryLang lang, Clock clock,
           std::optional<std::uint64_t> total);

  ~Progress();  ///< takes the terminal's line away
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void read(std::uint64_t bytes);  ///< so many more

  /// All is read, and what remains takes its time too: says so.
  void finishing();

private:
  std::string text(double seconds) const;
  void show(const std::string& line);

  std::ostream& out;
  Kind kind;
  SummaryLang lang;
  Clock clock;
  std::optional<std::uint64_t> total;
  double began;
  double shown;
  std::uint64_t done = 0;
};

}  // namespace Importer
