// The built program and clients that write too much, stop reading, or leave in the middle.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/Conversation.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace {

using Json = nlohmann::json;

constexpr std::size_t mebibyte = 1024 * 1024;

const std::string clientPing = "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n";
const std::string clientPong = "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{}}";
const char* const oneComplaint = "\\[....-..-.. ..:..:..\\] ! 收到解不开的一行,忽略\n";

ChildProcess serving(const Household& household) {
  return {LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot()};
}

/// A write to a program that has gone is an error here, not the end of the test.
class BrokenPipesIgnored {
public:
  BrokenPipesIgnored() : before(signal(SIGPIPE, SIG_IGN)) {}
  ~BrokenPipesIgnored() { signal(SIGPIPE, before); }
  BrokenPipesIgnored(const BrokenPipesIgnored&) = delete;
  BrokenPipesIgnored& operator=(const BrokenPipesIgnored&) = delete;

private:
  void (*before)(int);
};

struct LongLineCase {
  std::string name;
  std::string beginning;
  std::string block;
  int blocks;
  std::string end;
};

class LongLine : public testing::TestWithParam<LongLineCase> {};

TEST_P(LongLine, IsRefusedInBoundedMemoryAndTheNextIsServed) {
  const Household household;
  ChildProcess program = serving(household);
  program.write(clientPing);
  EXPECT_EQ(program.nextLine(), clientPong);
  const std::optional<std::size_t> before = program.peakMemory();

  program.write(GetParam().beginning);
  for (int count = 0; count < GetParam().blocks; ++count) program.write(GetParam().block);
  program.write(GetParam().end + "\n" + clientPing);
  EXPECT_EQ(program.nextLine(), clientPong);

  // Where the system does not tell, the rest holds all the same. Sixteen mebibytes are kept, and
  // for a moment copied to a larger place: less than the line would take.
  if (const std::optional<std::size_t> after = program.peakMemory()) {
    RecordProperty("MebibytesMore", static_cast<int>((*after - before.value()) / mebibyte));
    EXPECT_LT(*after - before.value(), 64 * mebibyte);
  }
  const ChildProcess::Ending ending = program.finished();
  EXPECT_EQ(ending.status, 0);
  EXPECT_EQ(ending.output, "");
  EXPECT_THAT(ending.errors, testing::MatchesRegex(oneComplaint));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, LongLine,
    testing::Values(
        LongLineCase{"OfLetters", "", std::string(mebibyte, 'x'), 64, ""},
        LongLineCase{"OfBlanks", "", std::string(mebibyte, ' '), 64, ""},
        LongLineCase{"OfZeroBytes", "", std::string(mebibyte, '\0'), 64, ""},
        LongLineCase{
            "WithALongText", R"({"id":1,"method":")", std::string(mebibyte, 'x'), 64, "\"}"},
        LongLineCase{"OfTenMillionBrackets", "", std::string(1000000, '['), 10, ""},
        LongLineCase{"OfSixtyFourMebibytesOfBrackets", "", std::string(mebibyte, '['), 64, ""}),
    [](const auto& test) { return test.param.name; });

TEST(Client, ThatReadsLateGetsEveryReply) {
  const Household household;
  ChildProcess program = serving(household);
  constexpr int count = 300;

  // The replies are many times what a pipe holds, so the program has to wait for its reader.
  std::string requests;
  for (int id = 0; id < count; ++id) {
    requests += "{\"id\":" + std::to_string(id) + ",\"method\":\"tools/list\"}\n";
  }
  program.write(requests);

  for (int id = 0; id < count; ++id) ASSERT_EQ(Json::parse(program.nextLine()).at("id"), id);
  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
}

TEST(Client, ThatStopsReadingEndsTheProgram) {
  const Household household;
  ChildProcess program = serving(household);

  program.stopReading();
  program.write(clientPing);

  EXPECT_EQ(program.finished().status, 1);
}

TEST(Client, ThatStopsReadingInTheMiddleOfAReplyEndsTheProgram) {
  const Household household;
  const BrokenPipesIgnored inherited;
  ChildProcess program = serving(household);
  std::string requests;
  for (int count = 0; count < 100; ++count) requests += "{\"id\":1,\"method\":\"tools/list\"}\n";

  // One line was read, so the program is busy with the others, or waits for room.
  program.write(requests);
  program.nextLine();
  program.stopReading();

  EXPECT_EQ(program.finished().status, 1);
}

struct HalfLineCase {
  std::string name;
  std::string sent;
  bool complains;
};

class HalfLine : public testing::TestWithParam<HalfLineCase> {};

TEST_P(HalfLine, EndsTheProgramInPeace) {
  const Household household;
  ChildProcess program = serving(household);

  program.write(GetParam().sent);
  const ChildProcess::Ending ending = program.finished();

  EXPECT_EQ(ending.status, 0);
  EXPECT_EQ(ending.output, "");
  EXPECT_THAT(ending.errors, testing::MatchesRegex(GetParam().complains ? oneComplaint : ""));
}

INSTANTIATE_TEST_SUITE_P(
    Lines, HalfLine,
    testing::Values(HalfLineCase{"Request", R"({"jsonrpc":"2.0","id":1,"method":"tools/ca)", true},
                    HalfLineCase{"Brace", "{", true}, HalfLineCase{"Character", "\xE6\xAD", true},
                    HalfLineCase{"ZeroByte", std::string(1, '\0'), true},
                    HalfLineCase{"Blank", " ", false}, HalfLineCase{"CarriageReturn", "\r", true},
                    HalfLineCase{"Notification", R"({"method":"ping"})", false}),
    [](const auto& test) { return test.param.name; });

TEST(HalfLine, OfAClientThatIsGoneEndsTheProgramInPeace) {
  const Household household;
  ChildProcess program = serving(household);

  program.stopReading();
  program.write(R"({"jsonrpc":"2.0","id":1,"method":"ping)");

  // Its complaint finds no reader either.
  EXPECT_EQ(program.finished().status, 0);
}

TEST(Client, ThatWritesByteByByteIsServed) {
  const Household household;
  ChildProcess program = serving(household);

  for (const char byte : clientPing) program.write(std::string_view(&byte, 1));

  EXPECT_EQ(program.nextLine(), clientPong);
}

TEST(Client, ThatWritesManyBadLinesIsServedAfterwards) {
  const Household household;
  ChildProcess program = serving(household);
  constexpr std::size_t count = 1000;

  std::string lines;
  for (std::size_t index = 0; index < count; ++index) lines += "[\n";
  program.write(lines + clientPing);

  EXPECT_EQ(program.nextLine(), clientPong);
  const std::string complaints = program.finished().errors;
  EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(complaints, '\n')), count);
}

/// A pipe in the file system that takes what fits into it, until somebody reads.
class NamedPipe {
public:
  explicit NamedPipe(const std::filesystem::path& path) {
    if (mkfifo(path.c_str(), 0600) == 0) reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
    if (reader < 0) throw std::system_error(errno, std::generic_category(), "mkfifo");
  }
  ~NamedPipe() { close(reader); }
  NamedPipe(const NamedPipe&) = delete;
  NamedPipe& operator=(const NamedPipe&) = delete;

  /// All that is in it, once nobody writes any more.
  std::string contents() const {
    std::string contents;
    std::array<char, 4096> block{};
    while (const std::size_t count = readSome(reader, block.data(), block.size())) {
      contents.append(block.data(), count);
    }
    return contents;
  }

private:
  int reader = -1;
};

TEST(Client, ThatNeverReadsComplaintsIsServed) {
  const Household household;
  const NamedPipe complaints(household.dataRoot() / "complaints");
  ChildProcess program("/bin/sh",
                       {"-c",
                        R"(exec "$0" "$@" 2>complaints)",
                        LARKSPUR_MCP_PROGRAM,
                        "--data-root",
                        household.dataRoot()},
                       household.dataRoot());
  constexpr std::size_t count = 3000;  // complaints of more than twice what a pipe holds

  std::string lines;
  for (std::size_t index = 0; index < count; ++index) lines += "[\n";
  program.write(lines + clientPing);

  EXPECT_EQ(program.nextLine(), clientPong);
  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
  const std::string kept = complaints.contents();
  EXPECT_TRUE(kept.ends_with("收到解不开的一行,忽略\n"));
  EXPECT_LT(static_cast<std::size_t>(std::ranges::count(kept, '\n')), count);
}

}  // namespace
