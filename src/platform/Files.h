#pragma once
// Whole files and complete writes, on top of the system calls.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// All bytes of the file at `path`; `nullopt` when it does not exist, is a directory or cannot be
/// read completely. Throws std::bad_alloc when it does not fit into memory.
std::optional<std::string> fileContents(const std::filesystem::path& path);

/// Writes all of `bytes` to the open `descriptor`, in a single write if the system accepts them at
/// once. Continues after a partial write and after a signal; waits if the descriptor is
/// non-blocking. Returns false and sets errno when the system refuses.
bool writeAll(int descriptor, std::string_view bytes);

/// The same, but returns the number of bytes that the system accepted; errno is set when it is
/// fewer than all.
std::size_t writeWhatFits(int descriptor, std::string_view bytes);

/// Reopens the terminal at `descriptor` for writing, non-blocking, under the same descriptor. The
/// terminal as other programs opened it stays blocking. Does nothing when the descriptor is not a
/// terminal or the terminal may not be opened.
void makeTerminalOwn(int descriptor);

/// Writes as much of `bytes` to the open `descriptor` as is possible without waiting. The rest is
/// lost; all of it is lost when the system refuses. Up to PIPE_BUF bytes are one write. A terminal
/// that was not reopened (see makeTerminalOwn) is non-blocking meanwhile, for other programs too.
void writeWithoutWaiting(int descriptor, std::string_view bytes);

/// Reads up to `size` bytes (at least 1) from the open `descriptor` into `buffer`; blocks until at
/// least one byte is there. Returns 0 at the end of the input and for a terminal that was hung up.
/// Throws std::system_error when the system refuses.
std::size_t readSome(int descriptor, char* buffer, std::size_t size);

/// Opens standard input, output and error on /dev/null where the parent process left them closed.
/// Otherwise the next opened file would get such a descriptor, and replies would go into the access
/// log. Throws std::system_error when /dev/null cannot be opened.
void reserveStandardStreams();
