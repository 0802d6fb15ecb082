#pragma once
// What every fuzz target is: the two functions that libFuzzer calls, and a way to say what does not
// hold. A crash, a leak or a hang is found without being asked for.

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Called once, before the first input: takes the machine's time zone away.
extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments);

/// Called with every input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// The input as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the program with `sentence`, what should hold, on standard error, unless it `holds`.
/// libFuzzer then keeps the input. Standard error is the one the program was started with: the
/// server's own complaints about hostile input are closed off.
void require(bool holds, std::string_view sentence);
