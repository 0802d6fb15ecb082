#include "import/StopSignals.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>

namespace {

// A signal handler can access only global variables.
std::atomic<int> firstSignal{0};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void noteSignal(int number) {
  int none = 0;
  firstSignal.compare_exchange_strong(none, number);
}

}  // namespace

void StopSignals::note() {
  for (const int number : std::array{SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
    action = {};
    action.sa_handler = noteSignal;
    sigemptyset(&action.sa_mask);
    // Without SA_RESTART, so that a blocked read returns when a signal arrives.
    sigaction(number, &action, nullptr);
  }
}

bool StopSignals::noted() { return firstSignal.load() != 0; }

void StopSignals::end() {
  const int number = firstSignal.load();
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  sigaction(number, &standard, nullptr);
  sigset_t these;
  sigemptyset(&these);
  sigaddset(&these, number);
  sigprocmask(SIG_UNBLOCK, &these, nullptr);
  raise(number);
  constexpr int diedOf = 128;
  _exit(diedOf + number);
}
