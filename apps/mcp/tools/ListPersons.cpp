#include "mcp/tools/AnswerText.h"
#include "mcp/tools/Arguments.h"
#include "mcp/tools/Tools.h"
#include "platform/AppleFormat.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "store/Patience.h"

#include <chrono>

namespace {

constexpr Phrase nobody{"这台电脑上还没有任何成员。", "No members on this Mac yet."};
constexpr Phrase dataPart{":{0} 条记录,{1} ~ {2}", ": {0} records, {1} ~ {2}"};
constexpr Phrase lastSynced{",最近同步 {0}", ", last synced {0}"};
constexpr Phrase severalMembers{
    "🔴 有多个成员:后续每次查询都必须指定 person,不存在「全家合计」这种口径。",
    "🔴 Multiple members: every later query must name a person. There is no "
    "combined-household view."};

/// The range of the member's data; "" when it cannot be read, so that the other members are still
/// listed.
std::string dataOf(const Member& member, const Tools::Call& call) {
  try {
    const HealthStore store = Tools::open(member, call);
    const RecordedDays days = store.recordedDays();
    return filled(dataPart.in(call.lang),
                  {grouped(store.recordCount(), call.grouping), days.first, days.last});
  } catch (const std::exception&) {
    return "";
  }
}

std::string syncOf(const Member& member, SummaryLang lang) {
  if (!member.lastSyncAt) return "";
  return filled(lastSynced.in(lang), {AppleFormat::minuteText(*member.lastSyncAt)});
}

}  // namespace

std::string Tools::listPersons(const Call& call) {
  const std::vector<Member> members = call.roster.members();
  if (members.empty()) return std::string(nobody.in(call.lang));

  Patience patience(std::chrono::milliseconds(call.patienceMilliseconds));
  Call patient = call;
  patient.sharedPatience = &patience;
  Lines lines;
  for (const Member& member : members) {
    lines.add("· ",
              member.name,
              " (person=",
              member.id,
              ")",
              dataOf(member, patient),
              syncOf(member, call.lang));
  }
  if (members.size() > 1) {
    lines.add("");
    lines.add(severalMembers.in(call.lang));
  }
  return lines.joined();
}
