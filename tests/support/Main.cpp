// The main() of every test program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

namespace {

/// Removes the machine's language, locale and time zone: a test that needs them sets its own.
void fixEnvironment() {
  for (const char* name : {"LANGUAGE",
                           "LANG",
                           "LC_ALL",
                           "LC_COLLATE",
                           "LC_CTYPE",
                           "LC_MESSAGES",
                           "LC_MONETARY",
                           "LC_NUMERIC",
                           "LC_TIME"}) {
    unsetenv(name);
  }
  setenv("TZ", "UTC", 1);
  tzset();
}

}  // namespace

int main(int argumentCount, char** arguments) {
  // Before the initialisation of gtest, which computes the parameters of parameterised tests.
  fixEnvironment();
  testing::InitGoogleMock(&argumentCount, arguments);
  return RUN_ALL_TESTS();
}
