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

/// The server under a limit of the shell, with what the shell's `redirection` gives it to read.
ChildProcess servingUnder(const std::string& limit, const std::filesystem::path& dataRoot,
                          const std::string& redirection = "") {
  return {"/bin/sh",
          {"-c",
           "ulimit " + limit + R"( && exec "$0" "$@" )" + redirection,
           LARKSPUR_MCP_PROGRAM,
           "--data-root",
           dataRoot},
          dataRoot};
}

/// The server in an address space of so many mebibytes.
ChildProcess servingWithin(std::size_t mebibytes, const std::filesystem::path& dataRoot) {
  return servingUnder("-v " + std::to_string(mebibytes * 1024), dataRoot);
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

/// A request whose id, which is answered as it came, is nested almost as deep as a line may be,
/// beside a text of so many bytes.
std::string deepLine(std::size_t textSize) {
  constexpr std::size_t depth = 505;
  std::string nested;
  for (std::size_t level = 0; level < depth; ++level) nested += R"({"a":)";
  nested += "1" + std::string(depth, '}');
  return R"({"method":"ping","id":[")" + std::string(textSize, 'x') + "\"," + nested + "]}\n";
}

/// Fails the test unless a server under that limit answers beside such a line, or cannot start and
/// says so.
void expectAnswerOrComplaint(const std::string& limit, std::size_t textSize) {
  const Household household;
  std::ofstream(household.dataRoot() / "lines") << deepLine(textSize) << ping;
  SCOPED_TRACE(limit);

  const ChildProcess::Ending ending =
      servingUnder(limit, household.dataRoot(), "<lines").finished();

  if (ending.status == 1) {
    EXPECT_EQ(ending, (ChildProcess::Ending{1, "", "larkspur-mcp: not enough memory\n"}));
  } else if (ending.status != 127) {  // the system cannot load the program
    EXPECT_EQ(ending.status, 0);
    EXPECT_TRUE(ending.output.ends_with(pong + "\n"));
  }
}

/// The stack has to be there before it is needed: one that cannot grow ends the process.
TEST(ScarceMemory, LeavesTheDeepestLineItsStack) {
  constexpr std::size_t step = 200;  // less than what the line takes of the stack
  for (std::size_t kibibytes = 14000; kibibytes < 32000; kibibytes += step) {
    expectAnswerOrComplaint("-v " + std::to_string(kibibytes), kibibytes % 400 == 0 ? 1 : mebibyte);
  }
  for (std::size_t kibibytes = 65536; kibibytes < 67136; kibibytes += step) {
    expectAnswerOrComplaint("-v " + std::to_string(kibibytes), 10 * mebibyte);
  }
}

TEST(ScarceMemory, NeedsNoMoreStackThanItAsksFor) {
  for (const std::size_t kibibytes : {256U, 512U, 1024U, 2048U, 4096U}) {
    expectAnswerOrComplaint("-s " + std::to_string(kibibytes), 1);
  }
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
