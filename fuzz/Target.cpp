#include "Target.h"
#include "platform/Files.h"

#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include <string>

namespace {

int diagnostics = STDERR_FILENO;

}  // namespace

int LLVMFuzzerInitialize(int*, char***) {
  setenv("TZ", "UTC", 1);
  tzset();
  const int copy = dup(STDERR_FILENO);
  if (copy >= 0) diagnostics = copy;
  return 0;
}

void require(bool holds, std::string_view sentence) {
  if (holds) return;
  writeAll(diagnostics, "does not hold: " + std::string(sentence) + "\n");
  abort();
}
