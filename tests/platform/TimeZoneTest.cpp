#include "platform/AppleFormat.h"
#include "platform/System.h"
#include "platform/TimeZone.h"
#include "support/EnvironmentGuard.h"
#include "support/TemporaryFolder.h"
#include "support/ZoneGuard.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <random>
#include <string>

namespace {

/// The stamp of `utc` ("2024-03-01 00:00:00") in the zone called `name`.
std::string stampIn(const std::string& name, const std::string& utc) {
  TimeZone zone = TimeZone::named(name).value();
  const std::int64_t moment = AppleFormat::stampParser.parse(utc + " +0000").value();
  return std::string(StampText(zone.stamp(moment)).text());
}

struct ZoneCase {
  std::string name;
  std::string zone;
  std::string utc;
  std::string expected;
};

void PrintTo(const ZoneCase& value, std::ostream* out) { *out << value.name; }

class StampInZone : public testing::TestWithParam<ZoneCase> {};

TEST_P(StampInZone, HasTheOffsetOfThatMoment) {
  EXPECT_EQ(stampIn(GetParam().zone, GetParam().utc), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    ClocksThatChange, StampInZone,
    testing::Values(
        ZoneCase{
            "BeforeSpring", "America/New_York", "2024-03-10 06:59:59", "2024-03-10 01:59:59 -0500"},
        ZoneCase{"Spring", "America/New_York", "2024-03-10 07:00:00", "2024-03-10 03:00:00 -0400"},
        ZoneCase{
            "BeforeAutumn", "America/New_York", "2024-11-03 05:59:59", "2024-11-03 01:59:59 -0400"},
        ZoneCase{"Autumn", "America/New_York", "2024-11-03 06:00:00", "2024-11-03 01:00:00 -0500"},
        ZoneCase{"HalfAnHour",
                 "Australia/Lord_Howe",
                 "2024-04-06 15:00:00",
                 "2024-04-07 01:30:00 +1030"},
        ZoneCase{"AWholeDay",  // Samoa went from one side of the date line to the other
                 "Pacific/Apia",
                 "2011-12-30 10:00:00",
                 "2011-12-31 00:00:00 +1400"},
        ZoneCase{
            "TheDayBefore", "Pacific/Apia", "2011-12-30 09:59:59", "2011-12-29 23:59:59 -1000"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OtherPlacesAndYears, StampInZone,
    testing::Values(
        ZoneCase{"NoChanges", "Asia/Shanghai", "2024-07-01 16:00:00", "2024-07-02 00:00:00 +0800"},
        ZoneCase{
            "OddMinutes", "Asia/Kathmandu", "2024-07-01 00:00:00", "2024-07-01 05:45:00 +0545"},
        ZoneCase{
            "WestOfUTC", "America/St_Johns", "2024-07-01 00:00:00", "2024-06-30 21:30:00 -0230"},
        ZoneCase{"OlderRules", "Asia/Shanghai", "1988-07-01 00:00:00", "1988-07-01 09:00:00 +0900"},
        ZoneCase{"NewerRules", "Europe/Moscow", "2013-01-01 00:00:00", "2013-01-01 04:00:00 +0400"},
        ZoneCase{"Before1970", "Europe/Berlin", "1945-07-01 00:00:00", "1945-07-01 03:00:00 +0300"},
        ZoneCase{"SecondsRoundedUp",
                 "Asia/Shanghai",
                 "1890-01-01 00:00:00",
                 "1890-01-01 08:06:00 +0806"},
        ZoneCase{"SecondsRoundedDown",
                 "Europe/Paris",
                 "1890-01-01 00:00:00",
                 "1890-01-01 00:09:00 +0009"},
        ZoneCase{"HalfAMinuteAwayFromZero",
                 "Africa/Monrovia",
                 "1971-01-01 00:00:00",
                 "1970-12-31 23:15:00 -0045"},
        ZoneCase{
            "After2037", "America/New_York", "2050-07-01 00:00:00", "2050-06-30 20:00:00 -0400"},
        ZoneCase{"After2037InWinter",
                 "America/New_York",
                 "2050-01-01 00:00:00",
                 "2049-12-31 19:00:00 -0500"},
        ZoneCase{"UTC", "Etc/UTC", "2024-07-01 00:00:00", "2024-07-01 00:00:00 +0000"}),
    [](const auto& test) { return test.param.name; });

TEST(StampInZone, IsWhatTheSystemShowsAtRandomMoments) {
  std::mt19937_64 random(20240301);
  // Since 1936; before, some of these zones had seconds, which the system's clocks show.
  std::uniform_int_distribution<std::int64_t> moments(-1072915200, 4500000000);
  for (const char* name : {"America/New_York", "Africa/Casablanca", "Asia/Tokyo", "UTC"}) {
    TimeZone zone = TimeZone::named(name).value();
    const ZoneGuard guard(name);
    for (int count = 0; count < 2000; ++count) {
      const std::int64_t moment = moments(random);
      const std::string shown = AppleFormat::secondText(static_cast<double>(moment));
      const Stamp stamp = zone.stamp(moment);
      ASSERT_EQ(stamp.moment, moment);
      ASSERT_EQ(StampText(stamp).text().substr(0, 19), shown) << name;
    }
  }
}

TEST(TimeZone, LeavesTheProcessInItsOwn) {
  const ZoneGuard guard("Asia/Kolkata");
  TimeZone zone = TimeZone::named("America/New_York").value();

  zone.stamp(1709247272);

  EXPECT_STREQ(std::getenv("TZ"), "Asia/Kolkata");
  EXPECT_EQ(AppleFormat::secondText(0), "1970-01-01 05:30:00");
}

TEST(TimeZone, KeepsItsName) {
  EXPECT_EQ(TimeZone::named("America/New_York").value().name(), "America/New_York");
}

TEST(TimeZone, IsNoneUnderAnotherKindOfName) {
  for (const char* name : {"",
                           "Europe/Atlantis",
                           "Europe",
                           "Europe/",
                           "/Europe/Berlin",
                           "Europe//Berlin",
                           "../zoneinfo/Europe/Berlin",
                           "Europe/../Europe/Berlin",
                           "CST-8",
                           ":Europe/Berlin",
                           "Europe/Berlin ",
                           "right/Europe/Berlin",
                           "posix/Europe/Berlin",
                           "localtime",
                           "posixrules",
                           "Factory",
                           "zone.tab",
                           "tzdata.zi"}) {
    EXPECT_EQ(TimeZone::named(name).has_value(), false) << name;
  }
}

/// What is TZ, and which name comes of it.
struct NameCase {
  std::string name;
  std::string value;
  std::optional<std::string> expected;
};

void PrintTo(const NameCase& value, std::ostream* out) { *out << value.name; }

class TimeZoneName : public testing::TestWithParam<NameCase> {};

TEST_P(TimeZoneName, IsReadFromTheEnvironment) {
  const TemporaryFolder etc;
  const EnvironmentGuard zone{{"TZ", GetParam().value}};
  EXPECT_EQ(System::timeZoneName(etc.path()), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Environments, TimeZoneName,
    testing::Values(NameCase{"Name", "Asia/Shanghai", "Asia/Shanghai"},
                    NameCase{"NameBehindAColon", ":Asia/Shanghai", "Asia/Shanghai"},
                    NameCase{"Path", "/usr/share/zoneinfo/Asia/Shanghai", "Asia/Shanghai"},
                    NameCase{"PathBehindAColon", ":/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo"},
                    NameCase{"EmptyIsUTC", "", "UTC"}, NameCase{"Rule", "CST-8", std::nullopt},
                    NameCase{"OtherFile", "/etc/localtime", std::nullopt},
                    NameCase{"Nonsense", "Moon/Crater", std::nullopt}),
    [](const auto& test) { return test.param.name; });

class MachineTimeZone : public testing::Test {
protected:
  std::optional<std::string> name() const { return System::timeZoneName(etc.path()); }
  std::filesystem::path link() const { return etc / "localtime"; }

  TemporaryFolder etc;
  EnvironmentGuard unset{{"TZ", std::nullopt}};
};

TEST_F(MachineTimeZone, IsWhatTheLinkLeadsTo) {
  std::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Paris", link());
  EXPECT_EQ(name(), "Europe/Paris");
}

TEST_F(MachineTimeZone, IsFoundThroughRelativeAndFurtherLinks) {
  std::filesystem::create_symlink("further", link());
  std::filesystem::create_symlink("../../usr/share/zoneinfo/Europe/Paris", etc / "further");
  EXPECT_EQ(name(), "Europe/Paris");
}

TEST_F(MachineTimeZone, HasNoNameWhenTheFileIsACopy) {
  std::filesystem::copy_file("/usr/share/zoneinfo/Europe/Paris", link());
  EXPECT_EQ(name(), std::nullopt);
}

TEST_F(MachineTimeZone, HasNoNameWhenTheLinksGoRound) {
  std::filesystem::create_symlink("localtime", link());
  EXPECT_EQ(name(), std::nullopt);
}

TEST_F(MachineTimeZone, IsUTCWithoutAFile) { EXPECT_EQ(name(), "UTC"); }

}  // namespace
