#include "support/EnvironmentGuard.h"

#include <stdlib.h>

namespace {

void apply(const EnvironmentVariable& variable) {
  if (variable.value) {
    setenv(variable.name.c_str(), variable.value->c_str(), 1);
  } else {
    unsetenv(variable.name.c_str());
  }
}

}  // namespace

EnvironmentGuard::EnvironmentGuard(const Environment& variables) {
  for (const EnvironmentVariable& variable : variables) {
    EnvironmentVariable& old = before.emplace_back();
    old.name = variable.name;
    if (const char* value = getenv(variable.name.c_str())) old.value = value;
    apply(variable);
  }
}

EnvironmentGuard::~EnvironmentGuard() {
  // In reverse, so that a variable given twice gets its original value.
  for (auto variable = before.rbegin(); variable != before.rend(); ++variable) apply(*variable);
}
