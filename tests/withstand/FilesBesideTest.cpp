// What lies where SQLite keeps its files beside a database, and is none.

#include "support/ChildProcess.h"
#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

class PipeBesideADatabase : public testing::TestWithParam<std::string> {};

/// A server that waits for the other end of a pipe is ended by the test's patience.
TEST_P(PipeBesideADatabase, IsAnErrorOfTheCallsAboutThatPersonAlone) {
  Household household;
  const std::string ann =
      household.add("ann", "Ann").replaceFile(DamagedHousehold::wholeFile()).path();
  household.add("ben", "Ben").replaceFile(DamagedHousehold::wholeFile());
  std::filesystem::remove(ann + GetParam());
  ASSERT_EQ(mkfifo((ann + GetParam()).c_str(), 0600), 0);
  ChildProcess program(
      LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot());

  std::vector<nlohmann::json> requests;
  for (const char* person : {"ann", "ben"}) {
    requests.push_back(toolCall("get_day", {{"person", person}, {"date", "2024-03-16"}}));
  }
  requests = numbered(requests);
  program.write(asLines(requests));

  EXPECT_EQ(messageOf(checkedReply(requests[0], program.nextLine() + "\n")),
            "打不开 Ann 的数据:不是普通文件:" + ann + GetParam());
  EXPECT_THAT(textOf(checkedReply(requests[1], program.nextLine() + "\n")),
              testing::HasSubstr("HeartRate: 124 count/min (4 samples)"));
  EXPECT_EQ(program.finished().status, 0);
}

INSTANTIATE_TEST_SUITE_P(Endings, PipeBesideADatabase, testing::Values("-journal", "-wal", "-shm"),
                         [](const auto& test) { return test.param.substr(1); });

}  // namespace
