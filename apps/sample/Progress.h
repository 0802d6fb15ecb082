#pragma once
// Progress of the writing, on one line that is updated in place.

#include "platform/Clock.h"

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

/// Shows the number of rows and the rate. Silent unless `visible`, which is for terminals: a line
/// that is updated in place is useless in a log.
class Progress {
public:
  /// `out` must outlive this object.
  Progress(std::ostream& out, bool visible, Clock clock);

  void begin(std::string_view subject);
  void rows(std::int64_t count);  ///< so far, of the subject; cheap enough to call for every row
  void end();                     ///< clears the line

private:
  void show(std::int64_t count);

  std::ostream& out;
  bool visible;
  Clock clock;
  std::string subject;
  double began = 0;
};
