#include "import/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <variant>
#include <vector>

namespace {

using Importer::CommandLine::Say;
using testing::HasSubstr;
using testing::StartsWith;

std::variant<ImportOrder, CheckOrder, Say> parsed(const std::vector<const char*>& arguments,
                                                  SummaryLang lang = SummaryLang::en) {
  return Importer::CommandLine::parsed(arguments, "/default", lang);
}

TEST(CommandLine, TakesAMemberAndAnExport) {
  EXPECT_EQ(
      std::get<ImportOrder>(parsed({"--member", "Ann", "export.zip"})),
      (ImportOrder{
          .dataRoot = "/default", .name = "Ann", .id = std::nullopt, .source = "export.zip"}));
}

TEST(CommandLine, TakesOptionsInAnyOrderAndTheLastOfARepeatedOne) {
  EXPECT_EQ(
      std::get<ImportOrder>(parsed({"export.zip",
                                    "--id",
                                    "first",
                                    "--data-root",
                                    "~/root",
                                    "--member",
                                    "小美",
                                    "--id",
                                    "mei-03"})),
      (ImportOrder{.dataRoot = "~/root", .name = "小美", .id = "mei-03", .source = "export.zip"}));
}

TEST(CommandLine, TakesATimeZoneAsItStands) {
  const auto order = std::get<ImportOrder>(
      parsed({"--member", "Ann", "--time-zone", "Asia/Shanghai", "export.zip"}));

  EXPECT_EQ(order.timeZone, "Asia/Shanghai");
}

TEST(CommandLine, TakesACheckOfAnExportAndNothingElse) {
  EXPECT_EQ(std::get<CheckOrder>(parsed({"--check", "export.zip"})),
            (CheckOrder{.source = "export.zip"}));
  EXPECT_EQ(std::get<CheckOrder>(parsed({"export.zip", "--check"})),
            (CheckOrder{.source = "export.zip"}));
}

TEST(CommandLine, SpeaksOfNoImportWhenACheckIsGivenTwoExports) {
  EXPECT_THAT(std::get<Say>(parsed({"--check", "a.zip", "b.zip"})).text,
              StartsWith("larkspur-import: one export at a time, and this is a second: b.zip\n"));
  EXPECT_THAT(std::get<Say>(parsed({"--check", "a.zip", "b.zip"}, SummaryLang::zh)).text,
              StartsWith("larkspur-import: 一次只能处理一个导出文件，多出的是：b.zip\n"));
}

TEST(CommandLine, HelpsWhereverItIsAsked) {
  for (const char* word : {"-h", "--help"}) {
    const auto say = std::get<Say>(parsed({"--member", "Ann", word, "--unknown"}));
    EXPECT_EQ(say.status, 0);
    EXPECT_FALSE(say.toStderr);
    EXPECT_THAT(say.text, StartsWith("larkspur-import: brings what"));
  }
}

TEST(CommandLine, HelpsInChinese) {
  const auto say = std::get<Say>(parsed({"--help"}, SummaryLang::zh));

  EXPECT_THAT(say.text, StartsWith("larkspur-import —— 把 iPhone「健康」App 导出的数据"));
}

TEST(CommandLine, TellsItsVersion) {
  const auto say = std::get<Say>(parsed({"--version"}));

  EXPECT_EQ(say.status, 0);
  EXPECT_FALSE(say.toStderr);
  EXPECT_THAT(say.text, testing::MatchesRegex("larkspur-import [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

struct MisuseCase {
  std::string name;
  std::vector<const char*> arguments;
  std::string complaint;
};

class ImportMisuse : public testing::TestWithParam<MisuseCase> {};

TEST_P(ImportMisuse, IsExplainedOnStandardErrorWithStatusTwo) {
  const auto say = std::get<Say>(parsed(GetParam().arguments));

  EXPECT_EQ(say.status, 2);
  EXPECT_TRUE(say.toStderr);
  EXPECT_THAT(say.text, StartsWith("larkspur-import: " + GetParam().complaint + "\n\n"));
  EXPECT_THAT(say.text, HasSubstr("--data-root <dir>"));
}

constexpr const char* nameUnusable =
    "--member wants a name, in UTF-8, not empty and without control characters";

INSTANTIATE_TEST_SUITE_P(
    Cases, ImportMisuse,
    testing::Values(
        MisuseCase{"Nothing", {}, "--member is missing"},
        MisuseCase{"NoMember", {"export.zip"}, "--member is missing"},
        MisuseCase{"NoExport", {"--member", "Ann"}, "the export is missing"},
        MisuseCase{"TwoExports",
                   {"--member", "Ann", "a.zip", "b.zip"},
                   "one export at a time, and this is a second: b.zip"},
        MisuseCase{"CheckOfNothing", {"--check"}, "the export is missing"},
        MisuseCase{"CheckOfTwo",
                   {"--check", "a.zip", "b.zip"},
                   "one export at a time, and this is a second: b.zip"},
        MisuseCase{"CheckForAMember",
                   {"--check", "--member", "Ann", "a.zip"},
                   "--check stores nothing, so --member does not go with it"},
        MisuseCase{"CheckWithAnID",
                   {"--id", "ann", "--check", "a.zip"},
                   "--check stores nothing, so --id does not go with it"},
        MisuseCase{"CheckIntoADataRoot",
                   {"--check", "a.zip", "--data-root", "root"},
                   "--check stores nothing, so --data-root does not go with it"},
        MisuseCase{"CheckInATimeZone",
                   {"--check", "--time-zone", "Asia/Shanghai", "a.zip"},
                   "--check stores nothing, so --time-zone does not go with it"},
        MisuseCase{"NoValue", {"a.zip", "--member"}, "--member wants a value"},
        MisuseCase{"Unknown", {"--name", "Ann"}, "unknown argument: --name"},
        MisuseCase{"EmptyArgument", {""}, "unknown argument: "},
        MisuseCase{"BlankName", {"--member", " \u00a0", "a.zip"}, nameUnusable},
        MisuseCase{"EmptyTimeZone",
                   {"--time-zone", "", "--member", "Ann", "a.zip"},
                   "--time-zone wants a zone, such as Asia/Shanghai"},
        MisuseCase{"NameInAnotherCharacterSet", {"--member", "Ren\xe9", "a.zip"}, nameUnusable},
        MisuseCase{"NameOfTwoLines", {"--member", "Ann\nBen", "a.zip"}, nameUnusable},
        MisuseCase{"NameThatSteersATerminal", {"--member", "Ann\x1b[2J", "a.zip"}, nameUnusable},
        MisuseCase{"NameWithADelete", {"--member", "Ann\x7f", "a.zip"}, nameUnusable},
        MisuseCase{"NameWithAControlCharacterOfTwoBytes",
                   {"--member", "Ann\u009b", "a.zip"},
                   nameUnusable},
        MisuseCase{"EmptyDataRoot",
                   {"--data-root", "", "--member", "Ann", "a.zip"},
                   "--data-root wants a folder"},
        MisuseCase{"EmptyID",
                   {"--id", ""},
                   "--id wants 1 to 64 letters, digits, hyphens and underscores, nothing else"},
        MisuseCase{"IDThatLeadsElsewhere",
                   {"--id", ".."},
                   "--id wants 1 to 64 letters, digits, hyphens and underscores, nothing else"},
        MisuseCase{"IDWithAFolder",
                   {"--id", "a/b"},
                   "--id wants 1 to 64 letters, digits, hyphens and underscores, nothing else"}),
    [](const auto& test) { return test.param.name; });

}  // namespace
