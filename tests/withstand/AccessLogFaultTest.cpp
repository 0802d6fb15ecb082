// An access log that cannot be written: the server goes on answering.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/Household.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
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

const std::string dayRequest =
    R"({"id":1,"method":"tools/call","params":{"name":"get_day","arguments":{"date":"2024-03-01"}}})"
    "\n";

/// Fails the test unless each of `count` calls is answered, and the program ends well.
void expectAnswers(ChildProcess& program, int count) {
  for (int call = 0; call < count; ++call) {
    program.write(dayRequest);
    EXPECT_NE(program.nextLine().find("HeartRate: 60"), std::string::npos);
  }
  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
}

TEST_P(SpoiltAccessLog, KeepsNobodyFromAnAnswer) {
  Household household;
  household.add("ann", "Ann").addRecord({.start_day = "2024-03-01", .value_num = 60});
  const std::filesystem::path log = household.dataRoot() / "mcp-access.log";
  GetParam().spoil(log);
  ChildProcess program(
      LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot());

  expectAnswers(program, 3);

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

/// Whoever lays a link there says where the log shall be; nobody else may read it there either.
TEST(SpoiltAccessLog, IsMadeForTheOwnerAloneWhereALinkPoints) {
  Household household;
  household.add("ann", "Ann").addRecord({.start_day = "2024-03-01", .value_num = 60});
  const TemporaryFolder elsewhere;
  const std::filesystem::path log = household.dataRoot() / "mcp-access.log";
  const std::filesystem::path target = elsewhere / "access.txt";
  std::filesystem::create_symlink(target, log);
  ChildProcess program(
      LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot());

  expectAnswers(program, 3);

  EXPECT_TRUE(std::filesystem::is_symlink(log));
  EXPECT_EQ(std::filesystem::symlink_status(target).type(), std::filesystem::file_type::regular);
  EXPECT_EQ(std::filesystem::status(target).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  EXPECT_EQ(std::ranges::count(fileContents(target).value_or(""), '\n'), 3);
}

/// The system ends a program that does not expect to reach such a limit.
TEST(SpoiltAccessLog, MayBeAsLongAsTheSystemLetsAFileBe) {
  Household household;
  // In a file without a log of its own, so that the access log is all that grows.
  household.add("ann", "Ann")
      .addRecord({.start_day = "2024-03-01", .value_num = 60})
      .useRollbackJournal();
  ChildProcess program("/bin/sh",
                       {"-c",
                        R"(ulimit -f 1 && exec "$0" "$@")",
                        LARKSPUR_MCP_PROGRAM,
                        "--data-root",
                        household.dataRoot()},
                       household.dataRoot());

  expectAnswers(program, 40);

  // Shells count in blocks of either size.
  EXPECT_THAT(std::filesystem::file_size(household.dataRoot() / "mcp-access.log"),
              testing::AnyOf(512U, 1024U));
}

}  // namespace
