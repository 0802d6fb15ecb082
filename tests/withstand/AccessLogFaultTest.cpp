// An access log that cannot be written: the server goes on answering.

#include "support/ChildProcess.h"
#include "support/Household.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <system_error>

namespace {

struct LogCase {
  std::string name;
  void (*spoil)(const std::filesystem::path& log);
};

void PrintTo(const LogCase& test, std::ostream* stream) { *stream << test.name; }

class SpoiltAccessLog : public testing::TestWithParam<LogCase> {};

TEST_P(SpoiltAccessLog, KeepsNobodyFromAnAnswer) {
  Household household;
  household.add("ann", "Ann").addRecord({.start_day = "2024-03-01", .value_num = 60});
  const std::filesystem::path log = household.dataRoot() / "mcp-access.log";
  GetParam().spoil(log);
  ChildProcess program(
      LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot());
  const std::string request =
      R"({"id":1,"method":"tools/call","params":{"name":"get_day","arguments":{"date":"2024-03-01"}}})"
      "\n";

  for (int count = 0; count < 3; ++count) {
    program.write(request);
    EXPECT_NE(program.nextLine().find("HeartRate: 60"), std::string::npos);
  }

  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
  std::error_code ignored;
  EXPECT_FALSE(std::filesystem::is_regular_file(log, ignored));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SpoiltAccessLog,
    testing::Values(
        LogCase{"FullDevice",
                [](const auto& log) { std::filesystem::create_symlink("/dev/full", log); }},
        LogCase{"DanglingLink",
                [](const auto& log) { std::filesystem::create_symlink("/nowhere/at/all", log); }},
        LogCase{"LinkToItself", [](const auto& log) { std::filesystem::create_symlink(log, log); }},
        LogCase{"Folder", [](const auto& log) { std::filesystem::create_directory(log); }}),
    [](const auto& test) { return test.param.name; });

}  // namespace
