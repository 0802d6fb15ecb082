#include "import/CommandLine.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

using Importer::CommandLine::Say;

namespace phrases {

constexpr Phrase usage{
    R"(larkspur-import —— 把 iPhone「健康」App 导出的数据导入 Larkspur

  larkspur-import [--data-root <dir>] --member <name> [--id <id>]
                  [--time-zone <zone>] <export>
  larkspur-import --check <export>

  --check             只通读并统计导出文件，什么都不保存；输出里没有数值、姓名和具体日期
  --data-root <dir>   数据根目录（默认 ~/Library/Application Support/Larkspur）
  --member <name>     数据属于谁；名册里没有这个名字时新增一位成员
  --id <id>           成员的 id：用来区分同名的成员，或给新成员指定 id
  --time-zone <zone>  成员居住地的时区，如 Asia/Shanghai（默认本机时区）；
                      第一次导入时记下，以后一直沿用
  --help              显示这段说明
  --version           显示版本

<export> 是导出得到的 .zip、其中的 export.xml，或解压后的文件夹。
同一个导出文件再导入一次，不会有任何变化；较新的导出文件只补上新的数据。
)",
    R"(larkspur-import: brings what the iPhone's Health app exports into Larkspur

  larkspur-import [--data-root <dir>] --member <name> [--id <id>]
                  [--time-zone <zone>] <export>
  larkspur-import --check <export>

  --check             only read all of the export and count what it holds; what is printed has
                      no value, name or day
  --data-root <dir>   data root (default ~/Library/Application Support/Larkspur)
  --member <name>     whose data it is; a name that the roster lacks becomes a new member
  --id <id>           the member's id: tells people of one name apart, or names a new member's
  --time-zone <zone>  where the member lives, such as Asia/Shanghai (default: this machine's
                      zone); kept at the first import and used by every later one
  --help              this text
  --version           the version

<export> is the .zip that was exported, the export.xml inside it, or the unpacked folder.
Importing the same export again changes nothing; a newer one adds what is new.
)"};
constexpr Phrase unknownArgument{"不认识的参数：{0}", "unknown argument: {0}"};
constexpr Phrase valueMissing{"{0} 后面缺少值", "{0} wants a value"};
constexpr Phrase secondExport{"一次只能处理一个导出文件，多出的是：{0}",
                              "one export at a time, and this is a second: {0}"};
constexpr Phrase exportMissing{"没有指定要导入的导出文件", "the export is missing"};
constexpr Phrase uncheckedExport{"没有指定要检查的导出文件", "the export is missing"};
constexpr Phrase notWithCheck{"--check 什么都不保存，不能与 {0} 一起使用",
                              "--check stores nothing, so {0} does not go with it"};
constexpr Phrase memberMissing{"缺少 --member", "--member is missing"};
constexpr Phrase nameUnusable{
    "--member 后面要写成员的名字：UTF-8 编码，不能为空，不含控制字符",
    "--member wants a name, in UTF-8, not empty and without control characters"};
constexpr Phrase rootEmpty{"--data-root 后面要写一个文件夹", "--data-root wants a folder"};
constexpr Phrase zoneEmpty{"--time-zone 后面要写一个时区，如 Asia/Shanghai",
                           "--time-zone wants a zone, such as Asia/Shanghai"};
constexpr Phrase idUnusable{
    "--id 只能由 1 到 64 个字母、数字、- 和 _ 组成",
    "--id wants 1 to 64 letters, digits, hyphens and underscores, nothing else"};

}  // namespace phrases

constexpr int usageError = 2;

/// An id is the name of a folder and a part of resource URIs, so only characters without a meaning
/// in either are allowed.
bool usableID(std::string_view id) {
  constexpr std::size_t longest = 64;
  return !id.empty() && id.size() <= longest && std::ranges::all_of(id, [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '-' || letter == '_';
  });
}

/// Whether `text`, valid UTF-8, contains a control character, which a terminal would execute
/// instead of showing: U+0000 to U+001F, U+007F to U+009F.
bool hasControlCharacter(std::string_view text) {
  unsigned char before = 0;
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x20 || byte == 0x7f || (before == 0xc2 && byte < 0xa0)) return true;
    before = byte;
  }
  return false;
}

bool usableName(std::string_view name) {
  return repaired(name) == name && !trimmedWhitespace(name).empty() && !hasControlCharacter(name);
}

/// Collects the arguments of one command line.
class Reading {
public:
  Reading(const std::filesystem::path& defaultDataRoot, SummaryLang lang)
      : order{.dataRoot = defaultDataRoot, .name = {}, .id = {}, .source = {}}, lang(lang) {}

  Say refusal(const Phrase& phrase, std::string_view value = {}) const {
    return {.text = "larkspur-import: " + filled(phrase.in(lang), {value}) + "\n\n" +
                    std::string(phrases::usage.in(lang)),
            .toStderr = true,
            .status = usageError};
  }

  Say answer(std::string text) const {
    return {.text = std::move(text), .toStderr = false, .status = 0};
  }

  /// The error in the value; `nullopt` when it was accepted.
  std::optional<Say> take(std::string_view option, std::string_view value) {
    if (storing.empty()) storing = option;
    if (option == "--data-root") {
      if (value.empty()) return refusal(phrases::rootEmpty);
      order.dataRoot = value;
    } else if (option == "--member") {
      if (!usableName(value)) return refusal(phrases::nameUnusable);
      order.name = value;
    } else if (option == "--time-zone") {
      if (value.empty()) return refusal(phrases::zoneEmpty);
      order.timeZone = value;
    } else {
      if (!usableID(value)) return refusal(phrases::idUnusable);
      order.id = value;
    }
    return std::nullopt;
  }

  std::optional<Say> takeExport(std::string_view path) {
    if (!order.source.empty()) return refusal(phrases::secondExport, path);
    order.source = path;
    return std::nullopt;
  }

  void takeCheck() { checks = true; }

  std::variant<ImportOrder, CheckOrder, Say> finished() const {
    if (checks) return finishedCheck();
    if (order.name.empty()) return refusal(phrases::memberMissing);
    if (order.source.empty()) return refusal(phrases::exportMissing);
    return order;
  }

private:
  std::variant<ImportOrder, CheckOrder, Say> finishedCheck() const {
    if (!storing.empty()) return refusal(phrases::notWithCheck, storing);
    if (order.source.empty()) return refusal(phrases::uncheckedExport);
    return CheckOrder{.source = order.source};
  }

  ImportOrder order;
  bool checks = false;
  std::string_view storing;  ///< the first given option that applies only to an import
  SummaryLang lang;
};

}  // namespace

std::variant<ImportOrder, CheckOrder, Say> Importer::CommandLine::parsed(
    std::span<const char* const> arguments, const std::filesystem::path& defaultDataRoot,
    SummaryLang lang) {
  Reading reading(defaultDataRoot, lang);
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    const std::string_view argument = arguments[index];
    std::optional<Say> wrong;
    if (argument == "-h" || argument == "--help") {
      return reading.answer(std::string(phrases::usage.in(lang)));
    }
    if (argument == "--version") return reading.answer("larkspur-import " LARKSPUR_VERSION "\n");
    if (argument == "--check") {
      reading.takeCheck();
      continue;
    }
    if (argument == "--data-root" || argument == "--member" || argument == "--id" ||
        argument == "--time-zone") {
      if (index + 1 == arguments.size()) return reading.refusal(phrases::valueMissing, argument);
      wrong = reading.take(argument, arguments[++index]);
    } else if (argument.starts_with("-") || argument.empty()) {
      wrong = reading.refusal(phrases::unknownArgument, argument);
    } else {
      wrong = reading.takeExport(argument);
    }
    if (wrong) return *wrong;
  }
  return reading.finished();
}
