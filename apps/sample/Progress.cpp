#include "sample/Progress.h"
#include "platform/Locale.h"

#include <cmath>
#include <utility>

namespace {

/// Moves to the start of the terminal's line and clears it.
constexpr std::string_view clearLine = "\r\033[K";

}  // namespace

Progress::Progress(std::ostream& out, bool visible, Clock clock)
    : out(out), visible(visible), clock(std::move(clock)) {}

void Progress::begin(std::string_view name) {
  subject = name;
  if (visible) began = clock();
}

void Progress::rows(std::int64_t count) {
  constexpr std::int64_t interval = 16384;  // updates several times a second
  if (visible && count % interval == 0) show(count);
}

void Progress::show(std::int64_t count) {
  const double seconds = clock() - began;
  out << clearLine << subject << ": " << grouped(count, DigitGrouping{}) << " records";
  if (seconds > 0) {
    const std::int64_t rate = std::llround(static_cast<double>(count) / seconds);
    out << ", " << grouped(rate, DigitGrouping{}) << " a second";
  }
  out.flush();
}

void Progress::end() {
  if (visible) (out << clearLine).flush();
}
