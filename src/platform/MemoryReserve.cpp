#include "platform/MemoryReserve.h"

#include <sys/mman.h>
#include <sys/resource.h>

#include <exception>
#include <new>
#include <utility>

namespace {

/// To take a JSON value down takes 48 bytes for each value in it, and lines hold a hundred
/// thousand.
constexpr std::size_t reserveSize = 8 * 1024 * 1024;

/// Memory that is the program's and that nobody has touched, so that it takes no room; nullptr when
/// there is none. Not from the C library, which would go on to keep blocks of that size for itself.
void* mapped(std::size_t bytes) noexcept {
  constexpr int noFile = -1;
  void* memory =
      mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, noFile, 0);
  return memory == MAP_FAILED ? nullptr : memory;
}

/// The deepest value that a line may hold takes 550 KiB to answer in a debug build.
constexpr std::size_t stackSize = 1024 * 1024;

/// Whether the system lets the stack become so large, beside what the environment takes of it.
bool stackMayGrow() noexcept {
  rlimit limit{};
  return getrlimit(RLIMIT_STACK, &limit) == 0 && limit.rlim_cur >= 2 * stackSize &&
         MemoryReserve::couldHave(stackSize);
}

/// Makes the stack so large that no call needs more later, when there may be no room for it: a
/// stack that cannot grow ends the process. Only the last page is touched, so the others take no
/// memory until they are used; this file is compiled without probes, which would touch them all.
[[gnu::noinline]] void growStack() noexcept {
  [[maybe_unused]] volatile char room[stackSize];
  room[0] = 0;
}

/// What the handler of the language, which is handed nothing, needs to find.
struct State {
  bool kept = false;
  void* memory = nullptr;  ///< null while spent
};

State& state() noexcept {
  static State ofTheProcess;
  return ofTheProcess;
}

/// Called by the language when an allocation fails; to return means to try again.
void spend() {
  const bool failing = std::uncaught_exceptions() > 0 || std::current_exception() != nullptr;
  if (!failing || state().memory == nullptr) throw std::bad_alloc();
  munmap(std::exchange(state().memory, nullptr), reserveSize);
}

}  // namespace

void MemoryReserve::keep() {
  state().kept = true;
  restore();
  if (state().memory == nullptr || !stackMayGrow()) throw std::bad_alloc();
  growStack();
  std::set_new_handler(spend);
}

void MemoryReserve::restore() noexcept {
  if (state().kept && state().memory == nullptr) state().memory = mapped(reserveSize);
}

bool MemoryReserve::couldHave(std::size_t bytes) noexcept {
  if (bytes == 0) return true;
  void* memory = mapped(bytes);
  if (memory == nullptr) return false;
  munmap(memory, bytes);
  return true;
}
