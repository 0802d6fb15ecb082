#pragma once
// A program run as users run it. Most such programs answer lines with lines.

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A running program with pipes for its input and output; its standard error is discarded. System
/// failures throw std::system_error. The destructor ends a running program.
class Child {
public:
  /// Starts the program at the path `words[0]`, with the other words as arguments.
  explicit Child(const std::vector<std::string>& words);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// Writes `line`, which must end in a line feed, and waits for the answer. The returned line
  /// includes its line feed and is valid until the next call. A short answer takes one write and
  /// one read. Throws std::runtime_error when the program ends instead.
  std::string_view answer(std::string_view line);

  /// Closes the program's input, waits for its end, and returns its peak resident memory in bytes.
  std::int64_t finish();

  /// The end of a program that was not interrupted.
  struct Ending {
    bool succeeded;           ///< its exit status was 0
    double processorSeconds;  ///< includes the system's time for the program
    std::int64_t peakBytes;   ///< peak resident memory; this process's own peak if that is higher
  };

  /// Closes the program's input, reads all of its output and waits for its end.
  Ending ending();

private:
  pid_t process = -1;
  int input = -1;
  int output = -1;
  std::string received;  ///< grows to the size of the longest answer
};
