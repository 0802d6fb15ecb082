#pragma once
// The machine's time zone for the duration of a test.

#include "support/EnvironmentGuard.h"

#include <optional>
#include <string>

/// Makes `zone` ("Asia/Shanghai") the process's time zone; the destructor restores the previous
/// one.
class ZoneGuard {
public:
  explicit ZoneGuard(const std::string& zone);
  ~ZoneGuard();
  ZoneGuard(const ZoneGuard&) = delete;
  ZoneGuard& operator=(const ZoneGuard&) = delete;

private:
  std::optional<EnvironmentGuard> variable;
};
