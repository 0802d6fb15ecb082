#include "sample/Options.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace std::chrono_literals;

struct AcceptedCase {
  std::string name;
  std::vector<std::string_view> arguments;
  Options expected;
};

void PrintTo(const AcceptedCase& value, std::ostream* out) { *out << value.name; }

class AcceptedOptions : public testing::TestWithParam<AcceptedCase> {};

TEST_P(AcceptedOptions, AreWhatTheArgumentsSpell) {
  EXPECT_EQ(parsedOptions(GetParam().arguments), GetParam().expected);
}

Options optionsWith(auto change) {
  Options options;
  options.out = "d";
  change(options);
  return options;
}

Options exportWith(auto change) {
  Options options;
  options.exportTo = "e";
  change(options);
  return options;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, AcceptedOptions,
    testing::Values(
        AcceptedCase{"Defaults", {"--out", "d"}, optionsWith([](Options&) {})},
        AcceptedCase{"Everything",
                     {"--out",
                      "d",
                      "--members",
                      "5",
                      "--years",
                      "10",
                      "--records",
                      "20000000",
                      "--seed",
                      "18446744073709551615",
                      "--today",
                      "2024-02-29"},
                     optionsWith([](Options& options) {
                       options.members = 5;
                       options.years = 10;
                       options.records = 20000000;
                       options.seed = UINT64_MAX;
                       options.today = 2024y / 2 / 29;
                     })},
        AcceptedCase{"AsImported",
                     {"--as-imported", "--out", "d"},
                     optionsWith([](Options& options) { options.asImported = true; })},
        AcceptedCase{"Export",
                     {"--export", "e.zip", "--member", "Ben", "--seed", "3"},
                     optionsWith([](Options& options) {
                       options.out.clear();
                       options.exportTo = "e.zip";
                       options.member = "Ben";
                       options.seed = 3;
                     })},
        AcceptedCase{"Flaws",
                     {"--flaw", "zip64", "--export", "e.zip", "--flaw", "cut-off"},
                     exportWith([](Options& options) {
                       options.exportTo = "e.zip";
                       options.flaws = {Flaw::zip64, Flaw::cutOff};
                     })},
        AcceptedCase{"AllFlawsOfAnArchive",
                     {"--flaw", "all", "--flaw", "cut-off", "--export", "e.zip"},
                     exportWith([](Options& options) {
                       options.exportTo = "e.zip";
                       options.flaws = Flaws::readable(true);
                       options.flaws.insert(Flaw::cutOff);
                     })},
        AcceptedCase{"AllFlawsOfXML",
                     {"--export", "e", "--flaw", "all"},
                     exportWith([](Options& options) { options.flaws = Flaws::readable(false); })},
        AcceptedCase{"ListOfFlaws",
                     {"--flaw", "list", "--unheard-of"},
                     [] {
                       Options options;
                       options.listFlaws = true;
                       return options;
                     }()},
        AcceptedCase{"OffsetEastByItsSign",
                     {"--export", "e", "--offset", "+08:00"},
                     exportWith([](Options& options) { options.offset = 28800; })},
        AcceptedCase{"OffsetEastWithoutASign",
                     {"--export", "e", "--offset", "14:00"},
                     exportWith([](Options& options) { options.offset = 50400; })},
        AcceptedCase{"OffsetWest",
                     {"--export", "e", "--offset", "-05:00"},
                     exportWith([](Options& options) { options.offset = -18000; })},
        AcceptedCase{"OffsetAsInAStamp",
                     {"--export", "e", "--offset", "-0500"},
                     exportWith([](Options& options) { options.offset = -18000; })},
        AcceptedCase{"OffsetWithMinutes",
                     {"--export", "e", "--offset", "+05:45"},
                     exportWith([](Options& options) { options.offset = 20700; })},
        AcceptedCase{"OffsetOfNothing",
                     {"--export", "e", "--offset", "-00:00"},
                     exportWith([](Options& options) { options.offset = 0; })},
        AcceptedCase{"MetricUnits",
                     {"--export", "e", "--units", "metric"},
                     exportWith([](Options& options) { options.units = UnitSystem::metric; })},
        AcceptedCase{"ImperialUnits",
                     {"--export", "e", "--units", "imperial"},
                     exportWith([](Options& options) { options.units = UnitSystem::imperial; })},
        AcceptedCase{"TheLastOfARepeatedOptionWins",
                     {"--out", "c", "--seed", "1", "--out", "d", "--seed", "2"},
                     optionsWith([](Options& options) { options.seed = 2; })},
        AcceptedCase{"HelpEndsTheReading",
                     {"--help", "--nonsense"},
                     [] {
                       Options options;
                       options.help = true;
                       return options;
                     }()}),
    [](const auto& test) { return test.param.name; });

struct RejectedCase {
  std::string name;
  std::vector<std::string_view> arguments;
  std::string message;
};

void PrintTo(const RejectedCase& value, std::ostream* out) { *out << value.name; }

class RejectedOptions : public testing::TestWithParam<RejectedCase> {};

TEST_P(RejectedOptions, SayWhatIsWrong) {
  try {
    parsedOptions(GetParam().arguments);
    FAIL() << "accepted";
  } catch (const UsageError& error) {
    EXPECT_EQ(error.what(), GetParam().message);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RejectedOptions,
    testing::Values(
        RejectedCase{"NoArguments", {}, "--out or --export is missing"},
        RejectedCase{"DataRootAndExport",
                     {"--out", "d", "--export", "e.zip"},
                     "--out and --export exclude each other"},
        RejectedCase{
            "MemberOfADataRoot", {"--out", "d", "--member", "Ann"}, "--member belongs to --export"},
        RejectedCase{"OffsetOfADataRoot",
                     {"--out", "d", "--offset", "+08:00"},
                     "--offset belongs to --export"},
        RejectedCase{"OffsetTooFarEast",
                     {"--export", "e", "--offset", "+14:01"},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"OffsetTooFarWest",
                     {"--export", "e", "--offset", "-15:00"},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"OffsetWithSixtyMinutes",
                     {"--export", "e", "--offset", "08:60"},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"OffsetInWords",
                     {"--export", "e", "--offset", "Shanghai"},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"OffsetOfUTC",
                     {"--export", "e", "--offset", "Z"},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"OffsetWithoutMinutes",
                     {"--export", "e", "--offset", "+08"},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"OffsetWithTwoSigns",
                     {"--export", "e", "--offset", "+-08:00"},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"OffsetWithMoreBehind",
                     {"--export", "e", "--offset", "+08:00 "},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{"EmptyOffset",
                     {"--export", "e", "--offset", ""},
                     "--offset wants HH:MM with or without a sign, 14:00 at most"},
        RejectedCase{
            "UnitsOfADataRoot", {"--out", "d", "--units", "metric"}, "--units belongs to --export"},
        RejectedCase{"UnknownUnits",
                     {"--export", "e", "--units", "Imperial"},
                     "--units wants metric or imperial"},
        RejectedCase{"ImportedExport",
                     {"--export", "e.zip", "--as-imported"},
                     "--as-imported belongs to --out"},
        RejectedCase{"EmptyExport", {"--export", ""}, "--export wants a file"},
        RejectedCase{"EmptyDirectory", {"--out", ""}, "--out wants a directory"},
        RejectedCase{"Unknown", {"--out", "d", "--size", "3"}, "unknown argument: --size"},
        RejectedCase{"MissingValue", {"--out", "d", "--seed"}, "--seed wants a value"},
        RejectedCase{"NoMembers",
                     {"--out", "d", "--members", "0"},
                     "--members wants a whole number from 1 to 12"},
        RejectedCase{"FractionOfAYear",
                     {"--out", "d", "--years", "1.5"},
                     "--years wants a whole number from 1 to 30"},
        RejectedCase{"NegativeSeed",
                     {"--out", "d", "--seed", "-1"},
                     "--seed wants a whole number from 0 to 18446744073709551615"},
        RejectedCase{"TooManyRecords",
                     {"--out", "d", "--records", "99999999999999999999"},
                     "--records wants a whole number from 1000 to 100000000"},
        RejectedCase{"NoSuchFlaw",
                     {"--export", "e", "--flaw", "Zip64"},
                     "--flaw knows no \"Zip64\"; --flaw list tells the names"},
        RejectedCase{
            "FlawWithoutAnExport", {"--out", "d", "--flaw", "no-me"}, "--flaw belongs to --export"},
        RejectedCase{"AllFlawsWithoutAnExport",
                     {"--out", "d", "--flaw", "all"},
                     "--flaw belongs to --export"},
        RejectedCase{"ArchiveFlawOfXML",
                     {"--export", "e.xml", "--flaw", "zip64"},
                     "--flaw zip64 wants an archive: let the name of --export end in .zip"},
        RejectedCase{"TwoEndings",
                     {"--export", "e.zip", "--flaw", "empty", "--flaw", "cut-off"},
                     "--flaw cut-off and empty exclude each other: nobody can read either"},
        RejectedCase{"NoSuchDay",
                     {"--out", "d", "--today", "2023-02-29"},
                     "--today wants a day as YYYY-MM-DD, 1971 or later"},
        RejectedCase{"TooLongAgo",
                     {"--out", "d", "--today", "1970-12-31"},
                     "--today wants a day as YYYY-MM-DD, 1971 or later"}),
    [](const auto& test) { return test.param.name; });

TEST(Usage, NamesEveryOption) {
  for (const char* option : {"--out",
                             "--export",
                             "--member NAME",
                             "--offset HH:MM",
                             "--units SYSTEM",
                             "--flaw NAME",
                             "--flaw list",
                             "--members",
                             "--years",
                             "--records",
                             "--seed",
                             "--today",
                             "--as-imported",
                             "--help"}) {
    EXPECT_NE(usage.find(option), std::string_view::npos) << option;
  }
}

}  // namespace
