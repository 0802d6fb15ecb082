#include "import/report/Progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

/// A progress on a clock that the test turns.
struct Shown {
  explicit Shown(Importer::Progress::Kind kind, std::optional<std::uint64_t> total = 100000000,
                 SummaryLang lang = SummaryLang::en)
      : progress(
            out, kind, lang, [this] { return now; }, total) {}

  /// What a million bytes more, at that time, add to the output.
  std::string after(double seconds, std::uint64_t bytes = 1000000) {
    now = 1000 + seconds;
    out.str("");
    progress.read(bytes);
    return out.str();
  }

  double now = 1000;
  std::ostringstream out;
  Importer::Progress progress;
};

TEST(Progress, DrawsABarWithRateAndTimeLeft) {
  Shown shown(Importer::Progress::Kind::terminal);

  EXPECT_EQ(shown.after(2, 25000000),
            "\r\033[K[#####---------------] 25%, 25.0 of 100.0 MB, 12.5 MB/s, 0:06 left");
}

TEST(Progress, DrawsInChinese) {
  Shown shown(Importer::Progress::Kind::terminal, 100000000, SummaryLang::zh);

  EXPECT_EQ(shown.after(2, 25000000),
            "\r\033[K[#####---------------] 25%，已读 25.0 / 100.0 MB，12.5 MB/秒，剩余 0:06");
}

TEST(Progress, DrawsNoMoreOftenThanAnEyeFollows) {
  Shown shown(Importer::Progress::Kind::terminal);

  EXPECT_EQ(shown.after(0.1), "");
  EXPECT_NE(shown.after(0.25), "");
  EXPECT_EQ(shown.after(0.4), "");
  EXPECT_NE(shown.after(0.5), "");
}

TEST(Progress, TellsHoursLeft) {
  Shown shown(Importer::Progress::Kind::terminal, 10000000000);

  EXPECT_EQ(shown.after(1),
            "\r\033[K[--------------------] 0%, 1.0 of 10000.0 MB, 1.0 MB/s, 2:46:39 left");
}

TEST(Progress, StaysSaneWhenThereIsMoreThanPromised) {
  Shown shown(Importer::Progress::Kind::terminal, 1000000);

  EXPECT_EQ(shown.after(2, 4000000),
            "\r\033[K[####################] 100%, 4.0 of 1.0 MB, 2.0 MB/s, 0:00 left");
}

TEST(Progress, TellsWhatIsReadWhenTheWholeIsNotKnown) {
  Shown shown(Importer::Progress::Kind::terminal, std::nullopt);

  EXPECT_EQ(shown.after(2, 4000000), "\r\033[K4.0 MB, 2.0 MB/s");
}

TEST(Progress, SurvivesAClockThatIsSetBack) {
  Shown shown(Importer::Progress::Kind::terminal);
  shown.after(500);

  EXPECT_EQ(shown.after(100), "");
  EXPECT_NE(shown.after(101), "");
}

TEST(Progress, WritesALineAMinuteToALog) {
  Shown shown(Importer::Progress::Kind::log);

  EXPECT_EQ(shown.after(59), "");
  EXPECT_EQ(shown.after(61), "[--------------------] 2%, 2.0 of 100.0 MB, 0.0 MB/s, 49:49 left\n");
  EXPECT_EQ(shown.after(120), "");
  EXPECT_NE(shown.after(121), "");
}

TEST(Progress, SaysThatTheEndTakesItsTimeAndTakesTheLineAway) {
  std::ostringstream out;
  {
    Importer::Progress progress(
        out, Importer::Progress::Kind::terminal, SummaryLang::en, [] { return 0.0; }, 1);
    progress.finishing();
  }

  EXPECT_EQ(out.str(), "\r\033[Kall read; counting, and waiting for the disk …\r\033[K");
}

TEST(Progress, LeavesALogAlone) {
  std::ostringstream out;
  {
    Importer::Progress progress(
        out, Importer::Progress::Kind::log, SummaryLang::en, [] { return 0.0; }, 1);
    progress.finishing();
  }

  EXPECT_EQ(out.str(), "");
}

}  // namespace
