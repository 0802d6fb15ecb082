#include "mcp/server/CommandLine.h"

#include <cstddef>
#include <string_view>

namespace {

constexpr std::string_view usage =
    R"(larkspur-mcp —— Larkspur 的 MCP server(stdio)

  --data-root <dir>   数据目录(默认 ~/Library/Application Support/Larkspur)

这个程序由支持 MCP 的 AI 客户端自动拉起,一般不需要手动运行。
手动调试:在终端里跑起来,然后粘一行 JSON-RPC,比如
  {"jsonrpc":"2.0","id":1,"method":"tools/list"}
)";

constexpr int usageError = 2;

CommandLine::Say refusal(const std::string& text) {
  return {.text = text + "\n", .toStderr = true, .status = usageError};
}

}  // namespace

std::variant<CommandLine::Serve, CommandLine::Say> CommandLine::parsed(
    std::span<const char* const> arguments, const std::filesystem::path& defaultDataRoot) {
  Serve serve{.dataRoot = defaultDataRoot};
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string_view argument = arguments[index];
    if (argument == "-h" || argument == "--help") {
      return Say{.text = std::string(usage), .toStderr = false, .status = 0};
    }
    if (argument != "--data-root") return refusal("不认识的参数:" + std::string(argument));
    if (++index == arguments.size()) return refusal("--data-root 少了一个值");
    serve.dataRoot = arguments[index];
  }
  return serve;
}
