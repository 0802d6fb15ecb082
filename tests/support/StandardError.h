#pragma once
// Captures this process's standard error.

#include <string>

/// Redirects standard error until `finished` or the destructor restores it.
class StandardErrorCapture {
public:
  enum class Kind { file, terminal };

  /// A `terminal` passes bytes unchanged and has room for only a few lines.
  explicit StandardErrorCapture(Kind kind = Kind::file);
  ~StandardErrorCapture();
  StandardErrorCapture(const StandardErrorCapture&) = delete;
  StandardErrorCapture& operator=(const StandardErrorCapture&) = delete;

  /// Restores standard error; returns everything that was written to it meanwhile.
  std::string finished();

private:
  void giveBack();

  int original;
  int reader;
};
