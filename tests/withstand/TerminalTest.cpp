// A server in a terminal: one that nobody reads, and one that is hung up.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/Household.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

namespace {

const std::string typedPing = "{\"id\":1,\"method\":\"ping\"}\n";
const std::string typedPong = "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{}}";

/// The two ends of a terminal.
class Terminal {
public:
  Terminal() : end(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (end < 0 || grantpt(end) != 0 || unlockpt(end) != 0) {
      throw std::system_error(errno, std::generic_category(), "terminal");
    }
    device = ptsname(end);
    // So that it stays what it is while no program has it open.
    kept = open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  }
  ~Terminal() {
    hangUp();
    close(kept);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  const std::string& name() const { return device; }

  /// As if somebody had typed that.
  void type(const std::string& text) const {
    if (!writeAll(end, text)) throw std::system_error(errno, std::generic_category(), "write");
  }

  /// Writes to it until it takes no more, as it does when nobody reads.
  void fill() const {
    const int own = open(device.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    while (write(own, "....", 4) > 0) {
    }
    close(own);
  }

  void hangUp() {
    if (end >= 0) close(end);
    end = -1;
  }

private:
  int end;
  int kept = -1;
  std::string device;
};

const std::string dayRequest =
    R"({"id":1,"method":"tools/call","params":{"name":"get_day","arguments":{"date":"2024-03-01"}}})"
    "\n";

/// The server with one of its streams at `terminal`: `redirection` is the shell's word for which.
ChildProcess servingAt(const Terminal& terminal, const std::string& redirection,
                       const Household& household) {
  return {"/bin/sh",
          {"-c",
           R"(device="$1"; shift; exec "$0" "$@" )" + redirection + R"("$device")",
           LARKSPUR_MCP_PROGRAM,
           terminal.name(),
           "--data-root",
           household.dataRoot()},
          household.dataRoot()};
}

TEST(TerminalThatNobodyReads, DoesNotHoldUpTheServer) {
  const Household household;
  const Terminal terminal;
  ChildProcess program = servingAt(terminal, "2>", household);

  std::string lines;
  for (int count = 0; count < 2000; ++count) lines += "[\n";
  program.write(lines + typedPing);

  EXPECT_EQ(program.nextLine(), typedPong);
  EXPECT_EQ(program.finished().status, 0);
}

TEST(TerminalThatNobodyReads, DoesNotHoldUpTheLastWords) {
  const Household household;
  const Terminal terminal;
  terminal.fill();
  ChildProcess program = servingAt(terminal, ">/dev/full 2>", household);

  program.write(typedPing);

  EXPECT_EQ(program.finished().status, 1);
}

TEST(TerminalThatNobodyReads, DoesNotHoldUpTheServerAsItsAccessLog) {
  Household household;
  household.add("ann", "Ann").addRecord({.start_day = "2024-03-01", .value_num = 60});
  const Terminal terminal;
  terminal.fill();
  std::filesystem::create_symlink(terminal.name(), household.dataRoot() / "mcp-access.log");
  ChildProcess program(
      LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot());

  program.write(dayRequest);

  EXPECT_NE(program.nextLine().find("HeartRate: 60"), std::string::npos);
  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
}

TEST(TerminalThatIsHungUp, EndsTheServerInPeace) {
  const Household household;
  Terminal terminal;
  ChildProcess program = servingAt(terminal, "<", household);
  terminal.type(typedPing);
  EXPECT_EQ(program.nextLine(), typedPong);

  terminal.hangUp();

  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
}

}  // namespace
