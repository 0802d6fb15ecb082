// The main() of every test program.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <time.h>

namespace {

/// Takes language, locale and time zone away from the machine: a test that needs one sets its own.
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
  // First, because gtest computes the parameters of parameterised tests while it initialises.
  fixEnvironment();
  testing::InitGoogleMock(&argumentCount, arguments);
  return RUN_ALL_TESTS();
}
