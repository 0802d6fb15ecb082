#pragma once
// A program that answers lines with lines, run as a client runs it.

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

private:
  pid_t process = -1;
  int input = -1;
  int output = -1;
  std::string received;  ///< grows to the longest answer
};
