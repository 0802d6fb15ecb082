#include "mcp/server/CommandLine.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace {

using Arguments = std::vector<const char*>;

const std::filesystem::path defaultRoot = "/home/ann/Library/Application Support/Larkspur";

const std::string usage =
    "larkspur-mcp —— Larkspur 的 MCP server(stdio)\n"
    "\n"
    "  --data-root <dir>   数据目录(默认 ~/Library/Application Support/Larkspur)\n"
    "\n"
    "这个程序由支持 MCP 的 AI 客户端自动拉起,一般不需要手动运行。\n"
    "手动调试:在终端里跑起来,然后粘一行 JSON-RPC,比如\n"
    "  {\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"tools/list\"}\n";

struct ServeCase {
  std::string name;
  Arguments arguments;
  std::string dataRoot;
};

class ServingCommandLine : public testing::TestWithParam<ServeCase> {};

TEST_P(ServingCommandLine, NamesTheDataRoot) {
  const auto order = CommandLine::parsed(GetParam().arguments, defaultRoot);

  ASSERT_TRUE(std::holds_alternative<CommandLine::Serve>(order));
  EXPECT_EQ(std::get<CommandLine::Serve>(order).dataRoot.native(), GetParam().dataRoot);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ServingCommandLine,
    testing::Values(ServeCase{"NoArguments", {}, defaultRoot},
                    ServeCase{"DataRoot", {"--data-root", "/a"}, "/a"},
                    ServeCase{"LastOneWins", {"--data-root", "a", "--data-root", "b"}, "b"},
                    ServeCase{"TildeIsAFolder", {"--data-root", "~/x"}, "~/x"},
                    ServeCase{"RelativeStays", {"--data-root", "./a/../b/"}, "./a/../b/"},
                    ServeCase{"Empty", {"--data-root", ""}, ""},
                    ServeCase{"BlanksStay", {"--data-root", " a "}, " a "},
                    ServeCase{"HelpAsAValue", {"--data-root", "-h"}, "-h"},
                    ServeCase{"ItsOwnName", {"--data-root", "--data-root"}, "--data-root"}),
    [](const auto& test) { return test.param.name; });

struct SayCase {
  std::string name;
  Arguments arguments;
  std::string text;
  bool toStderr;
  int status;
};

class SayingCommandLine : public testing::TestWithParam<SayCase> {};

TEST_P(SayingCommandLine, EndsWithTextAndStatus) {
  const auto order = CommandLine::parsed(GetParam().arguments, defaultRoot);

  ASSERT_TRUE(std::holds_alternative<CommandLine::Say>(order));
  const auto& say = std::get<CommandLine::Say>(order);
  EXPECT_EQ(say.text, GetParam().text);
  EXPECT_EQ(say.toStderr, GetParam().toStderr);
  EXPECT_EQ(say.status, GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    Help, SayingCommandLine,
    testing::Values(SayCase{"Short", {"-h"}, usage, false, 0},
                    SayCase{"Long", {"--help"}, usage, false, 0},
                    SayCase{"AfterADataRoot", {"--data-root", "a", "-h"}, usage, false, 0},
                    SayCase{"BeforeSomethingWrong", {"-h", "-x"}, usage, false, 0},
                    SayCase{"BeforeAMissingValue", {"--help", "--data-root"}, usage, false, 0}),
    [](const auto& test) { return test.param.name; });

/// The refusal of `argument`.
SayCase unknown(const std::string& name, const Arguments& arguments, const std::string& argument) {
  return {name, arguments, "不认识的参数:" + argument + "\n", true, 2};
}

INSTANTIATE_TEST_SUITE_P(
    UnknownArgument, SayingCommandLine,
    testing::Values(unknown("Option", {"-x", "--data-root", "a"}, "-x"),
                    unknown("AfterADataRoot", {"--data-root", "a", "-x"}, "-x"),
                    unknown("BeforeHelp", {"-x", "-h"}, "-x"),
                    unknown("FirstOfTwo", {"-x", "-y"}, "-x"), unknown("Word", {"serve"}, "serve"),
                    unknown("Chinese", {"帮助"}, "帮助"), unknown("Empty", {""}, ""),
                    unknown("EqualsSign", {"--data-root=a"}, "--data-root=a"),
                    unknown("LetterCase", {"--HELP"}, "--HELP"),
                    unknown("OneDash", {"-help"}, "-help")),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    MissingValue, SayingCommandLine,
    testing::Values(SayCase{"Alone", {"--data-root"}, "--data-root 少了一个值\n", true, 2},
                    SayCase{"AfterAnother",
                            {"--data-root", "a", "--data-root"},
                            "--data-root 少了一个值\n",
                            true,
                            2}),
    [](const auto& test) { return test.param.name; });

}  // namespace
