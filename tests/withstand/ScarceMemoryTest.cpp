// The built server where memory is short: no line ends it, and no roster is taken for a broken one.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/Household.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t mebibyte = 1024 * 1024;
constexpr std::size_t longest = 15 * mebibyte;

const std::string ping = "{\"id\":7,\"method\":\"ping\"}\n";
const std::string pong = "{\"jsonrpc\":\"2.0\",\"id\":7,\"result\":{}}";

/// `head`, then `part` again and again up to so many bytes, and `tail`.
std::string lineOf(std::string_view head, std::string_view part, std::size_t size,
                   std::string_view tail) {
  std::string line(head);
  line.reserve(size + part.size() + tail.size() + 1);
  while (line.size() < size) line += part;
  return line.append(tail) + "\n";
}

/// Lines that take many times their size: as long as a line may be, and with as many values.
std::vector<std::string> hungryLines() {
  constexpr std::string_view call = R"({"id":1,"method":"tools/call","params":{"name":"get_day",)";
  std::string nested = R"({"id":1,"method":"ping","a":[)";
  for (int times = 0; times < 180; ++times) {
    nested += std::string(250, '[') + std::string(250, ']') + ",";
  }
  return {lineOf(R"({"id":1,"a":[)", R"({"a":1},)", longest, "1]}"),
          lineOf(R"({"id":1,"a":[)", "{},", longest, "1]}"),
          lineOf(R"({"method":"ping","id":")", "xxxxxxxx", longest, "\"}"),
          lineOf(R"({"method":"ping","id":[)", "1,", 190000, "1]}"),
          lineOf(R"({"method":"ping","id":[)", R"({"":1},)", 300000, "1]}"),
          lineOf(R"({"id":1,"method":")", "xxxxxxxx", longest, "\"}"),
          lineOf(R"({"id":1,"method":"initialize","params":{"clientInfo":{"name":")",
                 "\\u0001",
                 longest,
                 "\"}}}"),
          lineOf(std::string(call) + R"("arguments":{"a":[)", R"({"a":1},)", 390000, "1]}}}"),
          lineOf(std::string(call) + R"("arguments":{"a":")", "\\n", longest, "\"}}}"),
          lineOf(R"({"id":1,"method":"ping","a":[)", "[1],", 190000, R"(1],"a":1})"),
          lineOf(R"({"id":1,"method":"ping","a":[)", "{},", 140000, ""),
          lineOf(R"({"id":1,"method":"ping","a":[)", "\"12345678901234567890\",", 2000000, "1]}"),
          nested + "1]}\n"};
}

/// The server in an address space of so many mebibytes.
ChildProcess servingWithin(std::size_t mebibytes, const std::filesystem::path& dataRoot) {
  const std::string limit = "ulimit -v " + std::to_string(mebibytes * 1024);
  return {"/bin/sh",
          {"-c", limit + R"( && exec "$0" "$@")", LARKSPUR_MCP_PROGRAM, "--data-root", dataRoot},
          dataRoot};
}

class ScarceMemory : public testing::TestWithParam<std::size_t> {};

TEST_P(ScarceMemory, EndsNoServer) {
  const Household household;
  ChildProcess program = servingWithin(GetParam(), household.dataRoot());

  for (const std::string& line : hungryLines()) {
    program.write(line);
    program.write(ping);
    // Before it stands the reply to the line, if memory was enough for one.
    std::string reply = program.nextLine();
    if (reply != pong) reply = program.nextLine();
    ASSERT_EQ(reply, pong) << line.substr(0, 60);
  }

  EXPECT_EQ(program.finished().status, 0);
}

INSTANTIATE_TEST_SUITE_P(Mebibytes, ScarceMemory, testing::Values(64, 80, 112, 200, 300));

TEST(ScarceMemory, IsNamedByAServerThatCannotStart) {
  const Household household;
  std::vector<std::string> complaints;
  for (std::size_t mebibytes = 8; mebibytes < 64; ++mebibytes) {
    ChildProcess program = servingWithin(mebibytes, household.dataRoot());
    const ChildProcess::Ending ending = program.finished();
    if (ending.status == 1) complaints.push_back(ending.errors);
    // Below that it is the system that cannot load a program.
    EXPECT_THAT(ending.status, testing::AnyOf(0, 1, 127)) << mebibytes << ending.errors;
  }
  EXPECT_THAT(complaints, testing::Each("larkspur-mcp: not enough memory\n"));
  EXPECT_FALSE(complaints.empty());
}

TEST(ScarceMemory, LeavesASoundRosterWhereItIs) {
  Household household;
  household.add("ann", "Ann");
  const std::string sound = fileContents(household.rosterFile()).value();
  const std::string large =
      "{\"pad\":\"" + std::string(12 * mebibyte, 'x') + "\"," + sound.substr(sound.find('{') + 1);
  std::ofstream(household.rosterFile()) << large;

  const ChildProcess::Ending ending = servingWithin(64, household.dataRoot()).finished();

  EXPECT_EQ(ending, (ChildProcess::Ending{1, "", "larkspur-mcp: not enough memory\n"}));
  EXPECT_EQ(fileContents(household.rosterFile()), large);
}

TEST(WorstLine, LeavesNoMemoryBehind) {
  const Household household;
  ChildProcess program(
      LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot());
  program.write(ping);
  EXPECT_EQ(program.nextLine(), pong);
  const std::optional<std::size_t> before = program.memory();
  if (!before) GTEST_SKIP() << "the system does not tell";

  std::size_t more = 0;
  for (const std::string& line : hungryLines()) {
    program.write(line);
    program.write(ping);
    while (program.nextLine() != pong) {
    }
    more = std::max(more, program.memory().value() - std::min(*before, program.memory().value()));
  }

  const std::size_t mostMore = program.peakMemory().value() - *before;
  RecordProperty("KibibytesMore", static_cast<int>(more / 1024));
  RecordProperty("MebibytesMoreMeanwhile", static_cast<int>(mostMore / mebibyte));
  EXPECT_LT(more, 8 * mebibyte);
  EXPECT_LT(mostMore, 320 * mebibyte);
}

}  // namespace
