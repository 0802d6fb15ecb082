#pragma once
// Files that cannot grow, as on a disk that is full.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

/// No file grows beyond `size` bytes while this lives.
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
