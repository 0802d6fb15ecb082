#pragma once
// What this process writes to standard error.

#include <string>

/// Takes standard error away from the process until `finished`, or the destructor, gives it back.
class StandardErrorCapture {
public:
  enum class Kind { file, terminal };

  /// A `terminal` passes bytes through unchanged and holds a few lines only.
  explicit StandardErrorCapture(Kind kind = Kind::file);
  ~StandardErrorCapture();
  StandardErrorCapture(const StandardErrorCapture&) = delete;
  StandardErrorCapture& operator=(const StandardErrorCapture&) = delete;

  /// Gives standard error back; everything that was written to it meanwhile.
  std::string finished();

private:
  void giveBack();

  int original;
  int reader;
};
