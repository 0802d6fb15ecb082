#include "mcp/tools/Arguments.h"
#include "mcp/tools/MCPError.h"
#include "platform/JsonFields.h"
#include "platform/Phrase.h"
#include "platform/ReceiverError.h"
#include "platform/Text.h"

#include <nlohmann/json.hpp>

#include <exception>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr Phrase noMembers{
    "这台电脑上还没有任何成员 —— 用户需要先在 Larkspur 里配对 iPhone。",
    "No members on this Mac yet — the user has to pair an iPhone in Larkspur first."};
constexpr Phrase unknownPerson{"没有叫「{0}」的成员。可选:{1}",
                               "No member named \"{0}\". Available: {1}"};
constexpr Phrase personRequired{
    "这台电脑上有 {0} 个成员,person 参数必填(不支持全部成员)。先调 list_persons "
    "看清楚。可选:{1}",
    "This Mac has {0} members, so person is required (there is no 'all members' option). "
    "Call list_persons first. Available: {1}"};
constexpr Phrase unknownMetric{"不认识的 metric「{0}」。可用:{1}",
                               "Unknown metric \"{0}\". One of: {1}"};
constexpr Phrase metricRequired{"metric 必填。可用:{0}", "metric is required. One of: {0}"};

/// In Chinese in both languages, with the receiver application's wording.
constexpr std::string_view cannotOpen = "打不开 {0} 的数据:{1}";

MCPError refusal(const Phrase& phrase, SummaryLang lang,
                 std::initializer_list<std::string_view> values) {
  return {MCPError::invalidArguments, filled(phrase.in(lang), values)};
}

}  // namespace

std::optional<std::string> Tools::lenientText(const Call& call, const char* key) {
  const auto found = call.arguments.find(key);
  if (found == call.arguments.end() || !found->is_string()) return std::nullopt;
  return found->get<std::string>();
}

Member Tools::resolve(const Call& call) {
  std::vector<Member> members = call.roster.members();
  if (members.empty()) throw refusal(noMembers, call.lang, {});
  const std::string argument = lenientText(call, "person").value_or("");
  const std::string_view person = trimmedBlanks(argument);
  if (person.empty()) {
    if (members.size() == 1) return std::move(members.front());
    throw refusal(personRequired, call.lang, {std::to_string(members.size()), names(members)});
  }
  for (Member& member : members) {
    if (member.id == person || member.name == person) return std::move(member);
  }
  throw refusal(unknownPerson, call.lang, {person, names(members)});
}

std::string Tools::names(std::span<const Member> members) {
  return joined(members, ", ", &Member::name);
}

HealthStore::Options Tools::reading(const Call& call) {
  return {.createIfMissing = false,
          .readOnly = true,
          .patienceMilliseconds = call.patienceMilliseconds,
          .sharedPatience = call.sharedPatience};
}

HealthStore Tools::open(const Member& member, const Call& call) {
  try {
    return {member.dbPath, reading(call), call.log};
  } catch (const ReceiverError& error) {
    throw MCPError(MCPError::internal, filled(cannotOpen, {member.name, error.message}));
  } catch (const std::exception& error) {
    throw MCPError(MCPError::internal, filled(cannotOpen, {member.name, error.what()}));
  }
}

CivilDay Tools::today(const Call& call) { return AppleFormat::localTime(call.clock()).day; }

std::optional<std::string> Tools::strictText(const Call& call, const char* key,
                                             const Phrase& refused) {
  const auto found = call.arguments.find(key);
  if (found == call.arguments.end()) return std::nullopt;
  if (!found->is_string()) throw refusal(refused, call.lang, {key});
  return found->get<std::string>();
}

std::int64_t Tools::integerArgument(const Call& call, const char* key, const IntegerRule& rule,
                                    const Phrase& refused) {
  const auto found = call.arguments.find(key);
  if (found == call.arguments.end()) return rule.fallback;
  const std::optional<std::int64_t> number = JsonFields::wholeNumber(*found);
  if (!number || *number < rule.lowest || *number > rule.highest) {
    throw refusal(
        refused, call.lang, {key, std::to_string(rule.lowest), std::to_string(rule.highest)});
  }
  return *number;
}

std::optional<std::string> Tools::dayArgument(const Call& call, const char* key) {
  std::optional<std::string> text = lenientText(call, key);
  if (text && !AppleFormat::dayParser.parse(*text)) text.reset();
  return text;
}

DayRange Tools::range(const Call& call) {
  constexpr int defaultDays = 90;
  const CivilDay now = today(call);
  const CivilDay start = AppleFormat::daysBefore(now, defaultDays);
  return {.from = dayArgument(call, "from").value_or(AppleFormat::dayText(start)),
          .to = dayArgument(call, "to").value_or(AppleFormat::dayText(now))};
}

HealthMetric Tools::metricArg(const Call& call) {
  const std::optional<std::string> name = lenientText(call, "metric");
  if (!name) throw refusal(metricRequired, call.lang, {metricCatalog()});
  const std::optional<HealthMetric> metric = metricNamed(*name);
  if (!metric) throw refusal(unknownMetric, call.lang, {*name, metricCatalog()});
  return *metric;
}
