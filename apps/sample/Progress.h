#pragma once
// How far the writing has come, on one line that updates itself.

#include "platform/Clock.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

/// Shows rows and rate of what is being written. Silent unless `visible`, which is for terminals: a
/// log has no use for a line that is written over.
class Progress {
public:
  /// `out` outlives the progress.
  Progress(std::ostream& out, bool visible, Clock clock);

  void begin(std::string_view subject);
  void rows(std::int64_t count);  ///< so far, of the subject; cheap enough to call for every row
  void end();                     ///< takes the line away

private:
  void show(std::int64_t count);

  std::ostream& out;
  bool visible;
  Clock clock;
  std::string subject;
  double began = 0;
};
