#include "platform/MemoryReserve.h"

#include <sys/mman.h>
#include <sys/resource.h>

#include <exception>
#include <new>
#include <utility>

namespace {

/// Destroying a JSON value allocates 48 bytes for each value in it, and a line has up to a hundred
/// thousand values.
constexpr std::size_t reserveSize = 8 * 1024 * 1024;

/// Mapped but untouched memory, so that it occupies no RAM; nullptr when there is none. Not from
/// the C library, which would keep freed blocks of this size for itself.
void* mapped(std::size_t bytes) noexcept {
  constexpr int noFile = -1;
  void* memory =
      mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, noFile, 0);
  return memory == MAP_FAILED ? nullptr : memory;
}

/// In a debug build, answering the deepest value that a line may contain needs 550 KiB of stack.
constexpr std::size_t stackSize = 1024 * 1024;

/// Whether the system's limit allows such a stack beside the part that the environment uses, and
/// the memory for it is available.
bool stackMayGrow() noexcept {
  rlimit limit{};
  return getrlimit(RLIMIT_STACK, &limit) == 0 && limit.rlim_cur >= 2 * stackSize &&
         MemoryReserve::couldHave(stackSize);
}

/// Grows the stack enough for every later call. A stack that cannot grow later ends the process.
/// Only the last page is touched, so the other pages occupy no memory until they are used. This
/// file is compiled without stack probes, which would touch all of them.
[[gnu::noinline]] void growStack() noexcept {
  [[maybe_unused]] volatile char room[stackSize];
  room[0] = 0;
}

/// The state of the new-handler, which gets no arguments.
struct State {
  bool kept = false;
  void* memory = nullptr;  ///< nullptr while spent
};

State& state() noexcept {
  static State ofTheProcess;
  return ofTheProcess;
}

/// The new-handler: the runtime calls it when an allocation fails, and retries when it returns.
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
