#include "sample/Progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

constexpr std::int64_t shownAt = 16384;

TEST(Progress, IsSilentWhereThereIsNoTerminal) {
  std::ostringstream out;
  Progress progress(out, false, [] { return 0.0; });

  progress.begin("Ann");
  progress.rows(shownAt);
  progress.end();

  EXPECT_EQ(out.str(), "");
}

TEST(Progress, ShowsRowsAndRateOnOneLineAndTakesItAway) {
  std::ostringstream out;
  double now = 100;
  Progress progress(out, true, [&now] { return now; });

  progress.begin("Ann");
  now = 100.5;
  progress.rows(shownAt - 1);
  progress.rows(shownAt);
  progress.end();

  EXPECT_EQ(out.str(), "\r\033[KAnn: 16,384 records, 32,768 a second\r\033[K");
}

TEST(Progress, ShowsNoRateBeforeTimeHasPassed) {
  std::ostringstream out;
  Progress progress(out, true, [] { return 100.0; });

  progress.begin("Ann");
  progress.rows(shownAt);

  EXPECT_EQ(out.str(), "\r\033[KAnn: 16,384 records");
}

}  // namespace
