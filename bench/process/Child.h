#pragma once
// A program run as its user runs it, mostly one that answers lines with lines.

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A running program with pipes for its input and output; its standard error goes nowhere. Failures
/// of the system leave as std::system_error. The destructor ends a program that still runs.
class Child {
public:
  /// Starts the program that the first of `words` is the path of, with the others as arguments.
  explicit Child(const std::vector<std::string>& words);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// Writes `line`, which ends in a line feed, and waits for the line that answers it, returned
  /// with its line feed and valid until the next call. One write and one read when the answer is
  /// short. Throws std::runtime_error when the program ends instead.
  std::string_view answer(std::string_view line);

  /// Closes the program's input, waits for its end, and returns the most memory that it had
  /// resident, in bytes.
  std::int64_t finish();

  /// What became of a program that came to its end by itself.
  struct Ending {
    bool succeeded;           ///< it ended with status 0
    double processorSeconds;  ///< its own and the system's on its behalf
    std::int64_t peakBytes;   ///< the most memory resident, or what this process ever had if more
  };

  /// Closes the program's input and waits until it has written all it has to say and ended.
  Ending ending();

private:
  pid_t process = -1;
  int input = -1;
  int output = -1;
  std::string received;  ///< grows to the longest answer
};
