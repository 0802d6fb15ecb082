#pragma once
// Environment variables for as long as a test needs them.

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

struct EnvironmentVariable {
  std::string name;
  std::optional<std::string> value;  ///< absent: not set at all
};

using Environment = std::vector<EnvironmentVariable>;

/// Sets and unsets variables; the destructor puts back what was there before.
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
