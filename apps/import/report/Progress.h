#pragma once
// The progress of an import: a bar on a terminal, a line per minute in a log.

#include "platform/Clock.h"
#include "platform/SummaryLang.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

namespace Importer {

/// Shows the bytes read, the rate and the remaining time. Cheap enough to call for every piece.
class Progress {
public:
  enum class Kind {
    terminal,  ///< one line, updated several times a second
    log        ///< a new line every minute
  };

  /// `out` must outlive this object. `total` is absent when the size is unknown.
  Progress(std::ostream& out, Kind kind, SummaryLang lang, Clock clock,
           std::optional<std::uint64_t> total);

  ~Progress();  ///< clears the terminal's line
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void read(std::uint64_t bytes);  ///< adds this many bytes

  /// Shows that everything is read and the final work is running.
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
