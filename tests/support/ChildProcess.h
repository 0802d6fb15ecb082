#pragma once
// The built program, run as a client runs it.

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A program with pipes for its three streams and this process's environment. Every wait for it
/// throws after a minute. The destructor ends a running program.
class ChildProcess {
public:
  struct Ending {
    int status;  ///< exit status; 128 plus the signal's number after a signal
    std::string output;
    std::string errors;
    bool bySignal = false;

    bool operator==(const Ending&) const = default;
  };

  /// Starts `program` in `folder`.
  ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const std::filesystem::path& folder);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Writes a few lines to the program's input.
  void write(std::string_view input) const;

  /// Sends the program a signal.
  void send(int signal) const;

  /// The next line of the program's output, without its line feed.
  std::string nextLine();

  /// Whether the program has written output that was not read yet.
  bool hasWritten() const;

  /// Closes the reading ends of the program's output and errors, like a client that exits.
  void stopReading();

  /// The peak memory of the running program so far, in bytes; `nullopt` when the system does not
  /// provide it.
  std::optional<std::size_t> peakMemory() const;

  /// The current memory, in the same way.
  std::optional<std::size_t> memory() const;

  /// Closes only the reading end of the program's output.
  void stopReadingOutput();

  /// Closes the program's input and waits for its end. The returned output excludes lines returned
  /// by `nextLine`.
  Ending finished();

private:
  std::optional<std::size_t> statusOf(std::string_view label) const;
  bool readMore();

  pid_t process = -1;
  int input = -1;
  int output = -1;
  int errors = -1;
  std::string written;
  std::string complained;
};
