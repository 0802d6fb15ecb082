#pragma once
// The common part of all fuzz targets: libFuzzer's two functions, and a check. libFuzzer itself
// finds crashes, leaks and hangs.

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Called once, before the first input; sets the time zone to UTC.
extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments);

/// Called with every input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// The input as text.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// If `holds` is false, ends the program with `sentence`, the expected property, on standard error.
/// libFuzzer then saves the input. It writes to the original standard error, because that of the
/// server is closed.
void require(bool holds, std::string_view sentence);
