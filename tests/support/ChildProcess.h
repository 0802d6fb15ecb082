#pragma once
// The built program, run as a client runs it.

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A program with pipes for its three streams and this process's environment. Whatever waits for it
/// gives up after a minute, with an exception. The destructor ends a program that still runs.
class ChildProcess {
public:
  struct Ending {
    int status;  ///< of the exit; 128 and the signal's number when a signal ended it
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

  /// Gives the program a few lines to read.
  void write(std::string_view input) const;

  /// Sends the program a signal.
  void send(int signal) const;

  /// The next line that the program writes, without its line feed.
  std::string nextLine();

  /// Whether the program has written something that nobody has read yet.
  bool hasWritten() const;

  /// Closes the reading ends of both the program's output and its errors, as a client that leaves
  /// does.
  void stopReading();

  /// The most memory, in bytes, that the running program has had so far; `nullopt` where the system
  /// does not tell.
  std::optional<std::size_t> peakMemory() const;

  /// The memory that it has at this moment, in the same way.
  std::optional<std::size_t> memory() const;

  /// Closes the reading end of the program's output alone.
  void stopReadingOutput();

  /// Closes the program's input and waits for its end; the output is what no `nextLine` took.
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
