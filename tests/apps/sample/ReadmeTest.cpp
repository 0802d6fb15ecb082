// What README.md shows and names, in either language.

#include "mcp/tools/Prompts.h"
#include "mcp/tools/Tools.h"
#include "platform/AppleFormat.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Locale.h"
#include "platform/Logger.h"
#include "roster/Roster.h"
#include "sample/household/Household.h"
#include "support/TemporaryFolder.h"
#include "support/ZoneGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>
#include <sstream>
#include <string>

namespace {

/// What stands in the first block of that language in a README.
std::string blockOf(const std::string& readme, const std::string& language) {
  const std::string opening = "```" + language + "\n";
  const std::size_t begin = readme.find(opening) + opening.size();
  return readme.substr(begin, readme.find("\n```", begin) - begin);
}

/// The household that both files name for their example, at `root`.
void writeExampleHousehold(const std::filesystem::path& root) {
  Options options;
  options.out = root;
  options.members = 1;
  options.years = 2;
  options.records = 240000;
  options.seed = 7;
  const CivilDay today = *AppleFormat::dayParser.parse("2026-11-20");
  std::ostringstream report;
  std::ostringstream quiet;
  Progress progress(quiet, false, systemTime);
  writeHousehold(options, today, report, progress);
}

struct ReadmeCase {
  std::string name;
  std::string file;
  SummaryLang lang;
};

void PrintTo(const ReadmeCase& value, std::ostream* out) { *out << value.file; }

class Readme : public testing::TestWithParam<ReadmeCase> {
protected:
  const std::string readme =
      fileContents(std::filesystem::path(LARKSPUR_README).replace_filename(GetParam().file))
          .value();
};

TEST_P(Readme, OpensWithWhatTheServerAnswers) {
  const ZoneGuard zone("Asia/Shanghai");
  const TemporaryFolder folder;
  const Clock clock = [] { return 1795147200.0; };  // 2026-11-20 08:00 in Shanghai
  Logger log(std::nullopt, Logger::Level::error, false, clock);
  writeExampleHousehold(folder / "household");
  Roster roster(folder / "household" / "members.json", log, clock);
  roster.load();
  const auto call = nlohmann::json::parse(blockOf(readme, "json"));

  const std::string answer =
      Tools::answer(call.at("name").get<std::string>(),
                    {call.at("arguments"), roster, log, GetParam().lang, clock, DigitGrouping{}});

  EXPECT_EQ(answer, blockOf(readme, "text"));
}

TEST_P(Readme, ListsEveryToolAndEveryPrompt) {
  for (const auto& list : {Tools::schemas(GetParam().lang), Tools::prompts(GetParam().lang)}) {
    for (const auto& entry : list) {
      EXPECT_THAT(readme, testing::HasSubstr("| `" + entry.at("name").get<std::string>() + "` |"));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Readmes, Readme,
                         testing::Values(ReadmeCase{"English", "README.md", SummaryLang::en},
                                         ReadmeCase{"Chinese", "README.zh.md", SummaryLang::zh}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
