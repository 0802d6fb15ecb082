#include "store/Patience.h"

#include <algorithm>
#include <thread>

bool Patience::wait(int attempts) {
  using std::chrono::milliseconds;
  using std::chrono::steady_clock;
  if (left <= steady_clock::duration::zero()) return false;
  const milliseconds moment(attempts < 7 ? 1 << std::max(attempts, 0) : 100);
  const steady_clock::time_point began = steady_clock::now();
  std::this_thread::sleep_for(std::min<steady_clock::duration>(moment, left));
  left -= steady_clock::now() - began;
  return true;
}
