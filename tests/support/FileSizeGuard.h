#pragma once
// Files that cannot grow, as on a full disk.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

/// Limits all files to `size` bytes while this object exists.
class FileSizeGuard {
public:
  explicit FileSizeGuard(rlim_t size) : handler(std::signal(SIGXFSZ, SIG_IGN)) {
    EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit limit{size, before.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
  ~FileSizeGuard() {
    setrlimit(RLIMIT_FSIZE, &before);
    static_cast<void>(std::signal(SIGXFSZ, handler));
  }
  FileSizeGuard(const FileSizeGuard&) = delete;
  FileSizeGuard& operator=(const FileSizeGuard&) = delete;

private:
  void (*handler)(int);
  rlimit before{};
};
