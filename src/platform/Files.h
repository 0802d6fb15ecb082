#pragma once
// Whole files and whole writes, over the system's own calls.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// All bytes of the file at `path`; `nullopt` when it does not exist, is a directory or cannot be
/// read to its end. Throws std::bad_alloc when memory does not hold it.
std::optional<std::string> fileContents(const std::filesystem::path& path);

/// Writes all of `bytes` to the open `descriptor`, in one write where the system takes them at
/// once; continues after a partial write and an interrupt, waits where the descriptor does not
/// block. False, with errno set, when the system refuses.
bool writeAll(int descriptor, std::string_view bytes);

/// The same, but returns how many bytes the system took before it refused, errno set, the rest.
std::size_t writeWhatFits(int descriptor, std::string_view bytes);

/// Opens the terminal at `descriptor` anew, for writing, in the descriptor's place: it does not
/// block from then on, while the terminal that the program was started in blocks as ever, for the
/// other programs in it. Leaves a terminal that may not be opened, and what is no terminal.
void makeTerminalOwn(int descriptor);

/// Writes as much of `bytes` to the open `descriptor` as can be had without waiting; the rest is
/// lost, as all is when the system refuses. Up to PIPE_BUF bytes are one write. A terminal that is
/// not our own does not block meanwhile, for other programs neither; see makeTerminalOwn.
void writeWithoutWaiting(int descriptor, std::string_view bytes);

/// Reads up to `size` bytes (at least 1) from the open `descriptor` into `buffer`, waiting for the
/// first. 0 is the end of the input, as is a terminal that was hung up. Throws std::system_error
/// when the system refuses.
std::size_t readSome(int descriptor, char* buffer, std::size_t size);

/// Makes sure that standard input, output and error are open, on /dev/null where whoever started
/// the program left one closed: else the next file opened would take its place, and replies would
/// land in the access log. Throws std::system_error when even /dev/null does not open.
void reserveStandardStreams();
