#include "import/export/LocalStamps.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>

namespace {

/// An exported stamp, and its text and day in a zone.
struct LocalCase {
  std::string name;
  std::string zone;
  std::string exported;
  std::string text;
  std::optional<std::string> day;
};

void PrintTo(const LocalCase& value, std::ostream* out) { *out << value.name; }

class LocalStampOf : public testing::TestWithParam<LocalCase> {};

TEST_P(LocalStampOf, IsTheMomentInTheZone) {
  TimeZone zone = TimeZone::named(GetParam().zone).value();
  LocalStamps stamps(&zone);

  const LocalStamp stamp = stamps.local(GetParam().exported);

  EXPECT_EQ(stamp.text(), GetParam().text);
  EXPECT_EQ(stamp.day(), GetParam().day);
}

INSTANTIATE_TEST_SUITE_P(Readable, LocalStampOf,
                         testing::Values(LocalCase{"AtTheSameOffset",
                                                   "Asia/Shanghai",
                                                   "2024-03-01 08:00:00 +0800",
                                                   "2024-03-01 08:00:00 +0800",
                                                   "2024-03-01"},
                                         LocalCase{"ExportedInSummer",
                                                   "America/New_York",
                                                   "2024-01-15 00:30:00 -0400",
                                                   "2024-01-14 23:30:00 -0500",
                                                   "2024-01-14"},
                                         LocalCase{"ExportedInWinter",
                                                   "America/New_York",
                                                   "2024-06-30 23:30:00 -0500",
                                                   "2024-07-01 00:30:00 -0400",
                                                   "2024-07-01"},
                                         LocalCase{"ExportedAfterAJourney",
                                                   "Europe/Berlin",
                                                   "2024-06-30 23:30:00 +0900",
                                                   "2024-06-30 16:30:00 +0200",
                                                   "2024-06-30"},
                                         LocalCase{"OtherForms",
                                                   "Europe/Berlin",
                                                   "2024-1-5 8:00:00 +01:00",
                                                   "2024-01-05 08:00:00 +0100",
                                                   "2024-01-05"},
                                         LocalCase{"MinusZero",
                                                   "Etc/UTC",
                                                   "2024-01-05 08:00:00 -0000",
                                                   "2024-01-05 08:00:00 +0000",
                                                   "2024-01-05"}),
                         [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Unreadable, LocalStampOf,
    testing::Values(LocalCase{"TwelveHours",
                              "Europe/Berlin",
                              "2024-03-01 8:00:00\u202FPM +0800",
                              "2024-03-01 8:00:00\u202FPM +0800",
                              "2024-03-01"},
                    LocalCase{
                        "DayAlone", "Europe/Berlin", "2024-03-01", "2024-03-01", "2024-03-01"},
                    LocalCase{"NoDay", "Europe/Berlin", "yesterday", "yesterday", std::nullopt},
                    LocalCase{"Nothing", "Europe/Berlin", "", "", std::nullopt},
                    LocalCase{"BeforeAllYears",
                              "America/New_York",
                              "0001-01-01 00:00:00 +0000",
                              "0001-01-01 00:00:00 +0000",
                              "0001-01-01"},
                    LocalCase{"AfterAllYears",
                              "Asia/Shanghai",
                              "9999-12-31 23:59:59 +0000",
                              "9999-12-31 23:59:59 +0000",
                              "9999-12-31"}),
    [](const auto& test) { return test.param.name; });

TEST(LocalStamps, KeepTheirOffsetWithoutAZone) {
  LocalStamps stamps(nullptr);

  EXPECT_EQ(stamps.local("2024-01-01 00:30:00 +0930").text(), "2024-01-01 00:30:00 +0930");
  EXPECT_EQ(stamps.local("2024-01-01 00:30:00 +0930").day(), "2024-01-01");
  EXPECT_EQ(stamps.unreadable(), 0);
}

TEST(LocalStamps, CountWhatHasADayAndNoTime) {
  TimeZone zone = TimeZone::named("Europe/Berlin").value();
  LocalStamps stamps(&zone);
  for (const char* stamp : {"2024-03-01 08:00:00 +0100", "", "yesterday"}) stamps.local(stamp);
  EXPECT_EQ(stamps.unreadable(), 0);

  stamps.local("2024-03-01 8:00:00 PM +0100");
  stamps.local("2024-03-01");

  EXPECT_EQ(stamps.unreadable(), 2);
}

TEST(LocalStamps, KnowTheFirstOneThatCanBeRead) {
  TimeZone zone = TimeZone::named("Europe/Berlin").value();
  LocalStamps stamps(&zone);
  stamps.local("2024-03-01");
  EXPECT_EQ(stamps.first(), std::nullopt);

  stamps.local("1970-01-01 08:00:00 +0800");
  stamps.local("2024-03-01 08:00:00 +0100");

  EXPECT_EQ(stamps.first(), (Stamp{.moment = 0, .offset = 8 * 3600}));
}

}  // namespace
