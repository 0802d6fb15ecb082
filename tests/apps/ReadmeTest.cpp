// The example that README.md opens with.

#include "platform/AppleFormat.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Logger.h"
#include "roster/Roster.h"
#include "sample/Household.h"
#include "support/TemporaryFolder.h"
#include "support/ZoneGuard.h"
#include "tools/Tools.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>
#include <string>

namespace {

/// What stands in the first block of that language in README.md.
std::string blockOf(const std::string& readme, const std::string& language) {
  const std::string opening = "```" + language + "\n";
  const std::size_t begin = readme.find(opening) + opening.size();
  return readme.substr(begin, readme.find("\n```", begin) - begin);
}

/// The household that README.md names for its example, at `root`.
void writeExampleHousehold(const std::filesystem::path& root, Logger& log) {
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
  writeHousehold(options, today, report, progress, log);
}

}  // namespace

TEST(Readme, OpensWithWhatTheServerAnswers) {
  const ZoneGuard zone("Asia/Shanghai");
  const TemporaryFolder folder;
  const Clock clock = [] { return 1795147200.0; };  // 2026-11-20 08:00 in Shanghai
  Logger log(std::nullopt, Logger::Level::error, false, clock);
  writeExampleHousehold(folder / "household", log);
  Roster roster(folder / "household" / "members.json", log, clock);
  roster.load();
  const std::string readme = fileContents(LARKSPUR_README).value();
  const auto call = nlohmann::json::parse(blockOf(readme, "json"));

  const std::string answer =
      Tools::answer(call.at("name").get<std::string>(),
                    {call.at("arguments"), roster, log, SummaryLang::en, clock});

  EXPECT_EQ(answer, blockOf(readme, "text"));
}
