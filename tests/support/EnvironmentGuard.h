#pragma once
// Environment variables for the duration of a test.

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

struct EnvironmentVariable {
  std::string name;
  std::optional<std::string> value;  ///< absent: not set
};

using Environment = std::vector<EnvironmentVariable>;

/// Sets and unsets variables; the destructor restores them.
class EnvironmentGuard {
public:
  explicit EnvironmentGuard(const Environment& variables);
  EnvironmentGuard(std::initializer_list<EnvironmentVariable> variables)
      : EnvironmentGuard(Environment(variables)) {}
  ~EnvironmentGuard();
  EnvironmentGuard(const EnvironmentGuard&) = delete;
  EnvironmentGuard& operator=(const EnvironmentGuard&) = delete;

private:
  Environment before;
};
