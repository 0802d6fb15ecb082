#pragma once
// A memory reserve for error handling. Ordinary allocations cannot use it; clean-up and reporting
// after a failure can.

#include <cstddef>

namespace MemoryReserve {

/// Reserves memory from now on. An ordinary allocation without other memory still fails with
/// std::bad_alloc and leaves the reserve untouched. An allocation while an exception is in flight
/// or being handled may use the reserve. So clean-up may allocate, as the JSON library does. Also
/// grows the stack to a mebibyte at once. Throws std::bad_alloc when there is not enough memory.
/// For a single-threaded process, called from `main`.
void keep();

/// Refills the reserve after a failure that used it, if memory is available again. Does nothing
/// before the first `keep`.
void restore() noexcept;

/// Whether `bytes` more could be allocated at this moment.
bool couldHave(std::size_t bytes) noexcept;

}  // namespace MemoryReserve
