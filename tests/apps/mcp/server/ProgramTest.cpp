// The built program as a child process, seen from outside.

#include "platform/Files.h"
#include "support/ChildProcess.h"
#include "support/Conversation.h"
#include "support/EnvironmentGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

/// What the program says and how it ends when it gets `input` and nothing more.
ChildProcess::Ending ran(const Words& arguments, const std::filesystem::path& folder,
                         const std::string& input = "") {
  ChildProcess program(LARKSPUR_MCP_PROGRAM, arguments, folder);
  if (!input.empty()) program.write(input);
  return program.finished();
}

ChildProcess::Ending served(const Household& household, const std::string& input) {
  return ran({"--data-root", household.dataRoot()}, household.dataRoot(), input);
}

const std::string programPing = "{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"ping\"}\n";
const std::string programPong = "{\"jsonrpc\":\"2.0\",\"id\":1,\"result\":{}}\n";

const std::string usage =
    "larkspur-mcp —— Larkspur 的 MCP server(stdio)\n"
    "\n"
    "  --data-root <dir>   数据目录(默认 ~/Library/Application Support/Larkspur)\n"
    "\n"
    "这个程序由支持 MCP 的 AI 客户端自动拉起,一般不需要手动运行。\n"
    "手动调试:在终端里跑起来,然后粘一行 JSON-RPC,比如\n"
    "  {\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"tools/list\"}\n";

struct CommandCase {
  std::string name;
  Words arguments;
  int status;
  std::string output;
  std::string errors;
};

class ProgramCommandLine : public testing::TestWithParam<CommandCase> {};

TEST_P(ProgramCommandLine, SaysWhatItMustAndEndsWithoutServing) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending = ran(GetParam().arguments, folder.path());

  EXPECT_EQ(ending.status, GetParam().status);
  EXPECT_EQ(ending.output, GetParam().output);
  EXPECT_EQ(ending.errors, GetParam().errors);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ProgramCommandLine,
    testing::Values(
        CommandCase{"Help", {"-h"}, 0, usage, ""},
        CommandCase{"LongHelp", {"--help"}, 0, usage, ""},
        CommandCase{"HelpAfterADataRoot", {"--data-root", "a", "-h"}, 0, usage, ""},
        CommandCase{"MissingValue", {"--data-root"}, 2, "", "--data-root 少了一个值\n"},
        CommandCase{"Unknown", {"-x", "--data-root", "a"}, 2, "", "不认识的参数:-x\n"},
        CommandCase{
            "UnknownAfterADataRoot", {"--data-root", "a", "中"}, 2, "", "不认识的参数:中\n"}),
    [](const auto& test) { return test.param.name; });

TEST(Program, EndsInSilenceWithItsInput) {
  const Household household;

  EXPECT_EQ(served(household, ""), (ChildProcess::Ending{0, "", ""}));
}

TEST(Program, AnswersEachRequestBeforeTheNextComes) {
  const Household household;
  ChildProcess program(
      LARKSPUR_MCP_PROGRAM, {"--data-root", household.dataRoot()}, household.dataRoot());

  for (int id = 1; id <= 3; ++id) {
    program.write("{\"id\":" + std::to_string(id) + ",\"method\":\"ping\"}\n");
    EXPECT_EQ(Json::parse(program.nextLine()).at("id"), id);
  }

  EXPECT_EQ(program.finished(), (ChildProcess::Ending{0, "", ""}));
}

TEST(Program, AnswersALastLineWithoutAnEnd) {
  const Household household;

  EXPECT_EQ(served(household, R"({"jsonrpc":"2.0","id":1,"method":"ping"})"),
            (ChildProcess::Ending{0, programPong, ""}));
}

TEST(Program, ComplainsOfAnUnreadableLineAndGoesOn) {
  const Household household;

  const ChildProcess::Ending ending = served(household, "[1]\n" + programPing);

  EXPECT_EQ(ending.status, 0);
  EXPECT_EQ(ending.output, programPong);
  EXPECT_THAT(ending.errors,
              testing::MatchesRegex("\\[....-..-.. ..:..:..\\] ! 收到解不开的一行,忽略\n"));
}

TEST(Program, TakesTheLastDataRootLiterally) {
  const TemporaryFolder folder;

  const ChildProcess::Ending ending =
      ran({"--data-root", "first", "--data-root", "~/x"}, folder.path(), programPing);

  EXPECT_EQ(ending, (ChildProcess::Ending{0, programPong, ""}));
  EXPECT_TRUE(std::filesystem::is_regular_file(folder / "~" / "x" / "mcp-access.log"));
  EXPECT_FALSE(std::filesystem::exists(folder / "first"));
}

TEST(Program, ServesTheFolderInTheHomeDirectoryByDefault) {
  const TemporaryFolder folder;
  const EnvironmentGuard home({{"HOME", folder.path().string()}});

  const ChildProcess::Ending ending = ran({}, folder.path(), programPing);

  EXPECT_EQ(ending, (ChildProcess::Ending{0, programPong, ""}));
  EXPECT_TRUE(std::filesystem::exists(folder / "Library" / "Application Support" / "Larkspur" /
                                      "mcp-access.log"));
}

mode_t permissionsOf(const std::filesystem::path& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_mode & 07777;
}

TEST(Program, CreatesFilesForTheirOwnerAlone) {
  const TemporaryFolder folder;

  ran({"--data-root", "a/b"}, folder.path());

  EXPECT_EQ(permissionsOf(folder / "a"), mode_t{0700});
  EXPECT_EQ(permissionsOf(folder / "a" / "b"), mode_t{0700});
  EXPECT_EQ(permissionsOf(folder / "a" / "b" / "mcp-access.log"), mode_t{0600});
}

/// The names in `folder`, sorted.
std::vector<std::string> namesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

TEST(Program, StopsAtABrokenRosterAndStartsWithoutMembersNextTime) {
  const Household household;
  std::ofstream(household.rosterFile()) << "{\"version\":1}";

  const ChildProcess::Ending first = served(household, programPing);
  const std::vector<std::string> left = namesIn(household.dataRoot());
  const ChildProcess::Ending second =
      served(household,
             R"({"id":1,"method":"tools/call","params":{"name":"get_trend","arguments":{}}})"
             "\n");

  EXPECT_EQ(first.status, 1);
  EXPECT_EQ(first.output, "");
  EXPECT_THAT(first.errors,
              testing::MatchesRegex(
                  "\\[....-..-.. ..:..:..\\] ! 名册解析失败\\(已备份到 .*/members\\.json\\.broken-"
                  "[0-9]+\\):.+\n"));
  EXPECT_THAT(left,
              testing::ElementsAre("mcp-access.log",
                                   testing::MatchesRegex("members\\.json\\.broken-[0-9]+")));
  EXPECT_EQ(second.status, 0);
  EXPECT_EQ(second.errors, "");
  EXPECT_EQ(Json::parse(second.output)["error"]["message"],
            "No members on this Mac yet — the user has to pair an iPhone in Larkspur first.");
}

TEST(Program, QuotesNothingOfABrokenRoster) {
  const Household household;
  std::ofstream(household.rosterFile()) << "{\"version\":1,\n\"members\":[{\"id\":\"ann-01\",\n"
                                           "\"devices\":[{\"key\":\"c2VjcmV0";

  const ChildProcess::Ending ending = served(household, programPing);

  EXPECT_EQ(ending.status, 1);
  EXPECT_THAT(ending.errors, testing::EndsWith(":not JSON, line 3\n"));
  for (const char* quotation : {"c2Vj", "ann-01", "devices", "version"}) {
    EXPECT_THAT(ending.errors, testing::Not(testing::HasSubstr(quotation)));
  }
  EXPECT_EQ(fileContents(household.dataRoot() / "mcp-access.log"), "");
}

/// The records of the access log, each without its stamp.
Words recordsOf(const Household& household) {
  std::istringstream log(
      fileContents(household.dataRoot() / "mcp-access.log").value_or("the log is missing"));
  constexpr std::size_t stampLength = std::string_view("[2024-03-17 12:00:00] ").size();
  Words records;
  for (std::string line; std::getline(log, line);) {
    records.push_back(line.substr(std::min(line.size(), stampLength)));
  }
  return records;
}

struct ClosedCase {
  std::string name;
  std::string redirections;  ///< in a shell's words
  std::string input;
  bool answers;   ///< whether the replies can be seen
  Words records;  ///< of the access log
};

class ProgramWithoutAStream : public testing::TestWithParam<ClosedCase> {};

TEST_P(ProgramWithoutAStream, KeepsRepliesAndDiagnosticsOutOfItsLog) {
  const Household household;
  const std::string root = household.dataRoot().string();
  const std::string command = R"(exec "$0" --data-root "$1" )" + GetParam().redirections;
  ChildProcess program(
      "/bin/sh", {"-c", command, LARKSPUR_MCP_PROGRAM, root}, household.dataRoot());
  if (!GetParam().input.empty()) program.write(GetParam().input);

  const ChildProcess::Ending ending = program.finished();

  EXPECT_EQ(ending.status, 0);
  EXPECT_EQ(recordsOf(household), GetParam().records);
  if (GetParam().answers) {
    EXPECT_THAT(ending.output, testing::EndsWith(programPong));
  } else {
    EXPECT_EQ(ending.output, "");
  }
}

/// A line to complain of, one that the log tells of, and one that is answered.
const std::string threeLines =
    "[1]\n"
    R"({"id":0,"method":"initialize","params":{"clientInfo":{"name":"desk"}}})"
    "\n" +
    programPing;
const Words connection{"i 连接:desk"};

INSTANTIATE_TEST_SUITE_P(
    Streams, ProgramWithoutAStream,
    testing::Values(ClosedCase{"None", "", threeLines, true, connection},
                    ClosedCase{"Input", "<&-", "", false, {}},
                    ClosedCase{"Output", ">&-", threeLines, false, connection},
                    ClosedCase{"Error", "2>&-", threeLines, true, connection},
                    ClosedCase{"OutputAndError", ">&- 2>&-", threeLines, false, connection},
                    ClosedCase{"InputAndError", "<&- 2>&-", "", false, {}},
                    ClosedCase{"All", "<&- >&- 2>&-", "", false, {}}),
    [](const auto& test) { return test.param.name; });

TEST(Program, StartsWithoutMembersWhenAPipeIsInTheRostersPlace) {
  const Household household;
  ASSERT_EQ(mkfifo(household.rosterFile().c_str(), 0600), 0);

  EXPECT_EQ(served(household, programPing), (ChildProcess::Ending{0, programPong, ""}));
  EXPECT_TRUE(std::filesystem::is_fifo(household.rosterFile()));
}

TEST(Program, RefusesAPipeInTheDatabasesPlaceAtOnce) {
  Household household;
  const std::string pipe = (household.dataRoot() / "ann.sqlite").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  Member member;
  member.id = "1";
  member.name = "Ann";
  member.dbPath = pipe;
  household.add(member);

  const ChildProcess::Ending ending = served(
      household,
      R"({"id":1,"method":"tools/call","params":{"name":"get_trend","arguments":{"metric":"steps"}}})"
      "\n");

  EXPECT_EQ(ending.status, 0);
  EXPECT_EQ(Json::parse(ending.output).at("error"),
            (Json{{"code", -32603}, {"message", "打不开 Ann 的数据:库文件不存在:" + pipe}}));
}

/// The text that get_trend answers about "weight".
std::string weightTrend(const Household& household) {
  const ChildProcess::Ending ending = served(
      household,
      R"({"id":1,"method":"tools/call","params":{"name":"get_trend","arguments":{"metric":"weight","from":"2024-03-01","to":"2024-03-02"}}})"
      "\n");
  return Json::parse(ending.output).at("result").at("content").at(0).at("text");
}

struct LanguageCase {
  std::string name;
  Environment environment;
  std::string firstLine;
};

class ProgramLanguage : public testing::TestWithParam<LanguageCase> {};

TEST_P(ProgramLanguage, IsTheFirstOfTheUsersThatItSpeaks) {
  Household household;
  household.add("1", "Ann");
  const EnvironmentGuard environment(GetParam().environment);

  EXPECT_THAT(weightTrend(household), testing::StartsWith(GetParam().firstLine + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ProgramLanguage,
    testing::Values(LanguageCase{"Chinese", {{"LANG", "zh_CN.UTF-8"}}, "成员:Ann(person=1)"},
                    LanguageCase{"English", {{"LANG", "en_GB.UTF-8"}}, "Member: Ann (person=1)"},
                    LanguageCase{
                        "FrenchThenChinese", {{"LANGUAGE", "fr:zh-Hant"}}, "成员:Ann(person=1)"},
                    LanguageCase{"French", {{"LANG", "fr_FR.UTF-8"}}, "Member: Ann (person=1)"}),
    [](const auto& test) { return test.param.name; });

/// Makes the German locale in `folder`, as the system's own tool does it.
bool makeGermanLocale(const std::filesystem::path& folder) {
  const std::filesystem::path tool = "/usr/bin/localedef";
  if (!std::filesystem::exists(tool)) return false;
  const std::filesystem::path made = folder / "de_DE.UTF-8";
  ChildProcess localedef(
      tool, {"--no-archive", "-i", "de_DE", "-f", "UTF-8", made.string()}, folder);
  localedef.finished();
  return std::filesystem::exists(made / "LC_NUMERIC");
}

TEST(Program, FollowsTheLocaleInItsDigitGroupingAlone) {
  const TemporaryFolder locales;
  ASSERT_TRUE(makeGermanLocale(locales.path())) << "localedef, or what it reads, is not installed";
  Household household;
  household.add("1", "Ann")
      .addRecords({{.type = "BodyMass", .start_day = "2024-03-01", .value_num = 1234.5},
                   {.type = "BodyMass", .start_day = "2024-03-02", .value_num = 60.25}});
  const EnvironmentGuard german({{"LOCPATH", locales.path().string()}, {"LC_ALL", "de_DE.UTF-8"}});

  EXPECT_THAT(weightTrend(household),
              testing::HasSubstr("Days with data: 2, mean 647.4, min 60.25, max 1.235\n\n"
                                 "Daily:\n2024-03-01  1.235\n2024-03-02  60.25\n"));
}

}  // namespace
