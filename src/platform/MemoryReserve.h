#pragma once
// Memory kept back for the moment when there is no other: whoever builds something must do without
// it, and whoever takes it down again or reports the failure finds it.

#include <cstddef>

namespace MemoryReserve {

/// Keeps memory back from now on. An allocation that finds no other memory fails with
/// std::bad_alloc, as ever, and leaves the reserve alone; one that is made while an exception is on
/// its way or being handled is given it. So what a failure takes down may allocate, as the JSON
/// library does. The stack gets a mebibyte of its own at once. Throws std::bad_alloc when there is
/// not even so much. For a process of one thread, called from `main`.
void keep();

/// Makes the reserve whole again, after a failure that spent it, if there is memory by now. Does
/// nothing before the first `keep`.
void restore() noexcept;

/// Whether `bytes` more could be had at this moment.
bool couldHave(std::size_t bytes) noexcept;

}  // namespace MemoryReserve
