#include "mcp/tools/Prompts.h"
#include "mcp/tools/MCPError.h"
#include "platform/Phrase.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <string>

namespace {

struct Prompt {
  std::string_view name;
  Phrase description;
  Phrase text;  ///< the content of the user's message
};

constexpr std::array promptTable{
    Prompt{
        .name = "how_am_i",
        .description = {"我最近怎么样", "How have I been lately"},
        .text = {"先用 get_overview "
                 "读我的数据覆盖说明与摘要,"
                 "然后告诉我最近这段时间有什么值得注意的变化。只说数据里看得到的,缺失的项不要猜。",
                 "Start with get_overview to read my coverage notice and summary, then tell me "
                 "what changed recently. Stick to what the data shows; don't guess at gaps."}},
    Prompt{.name = "sleep_and_exercise",
           .description = {"帮我看看运动和睡眠的关系",
                           "Look at the relationship between my exercise and sleep"},
           .text = {"用 get_trend 分别取 sleep 与 exercise_minutes 最近 90 "
                    "天的序列,看看它们有没有同向变化。注意:相关不等于因果,把不确定的地方说出来。",
                    "Use get_trend for sleep and exercise_minutes over the last 90 days and see "
                    "whether they move together. Correlation isn't causation — say what's "
                    "uncertain."}},
    Prompt{.name = "doctor_questions",
           .description = {"帮我准备下次看医生要问的问题",
                           "Help me prepare questions for my next doctor visit"},
           .text = {"读 get_overview,然后列出 5 "
                    "个值得在下次门诊问医生的问题。每个问题都要指出它是基于哪个数据观察提出来"
                    "的,并明确写出数据的局限。",
                    "Read get_overview, then list five questions worth asking my doctor. For "
                    "each, name the observation it came from and state the data's limits."}},
};

}  // namespace

nlohmann::ordered_json Tools::prompts(SummaryLang lang) {
  nlohmann::ordered_json records = nlohmann::ordered_json::array();
  for (const Prompt& prompt : promptTable) {
    nlohmann::ordered_json record;
    record["name"] = prompt.name;
    record["description"] = prompt.description.in(lang);
    records.push_back(std::move(record));
  }
  return records;
}

nlohmann::ordered_json Tools::getPrompt(std::string_view name, SummaryLang lang) {
  const auto prompt = std::ranges::find(promptTable, name, &Prompt::name);
  if (prompt == promptTable.end()) {
    throw MCPError(MCPError::invalidArguments, "没有这个预设:" + std::string(name));
  }
  nlohmann::ordered_json message;
  message["role"] = "user";
  message["content"] = {{"type", "text"}, {"text", prompt->text.in(lang)}};
  nlohmann::ordered_json result;
  result["messages"] = nlohmann::ordered_json::array({std::move(message)});
  return result;
}
