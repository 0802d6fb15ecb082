#include "import/member/MemberZone.h"
#include "import/Failure.h"
#include "import/database/ImportedZone.h"
#include "platform/Phrase.h"
#include "platform/System.h"

#include <array>
#include <string_view>

namespace {

namespace phrases {

constexpr Phrase noZones{"这台电脑没有时区数据（缺少 tzdata）：{0}",
                         "this machine has no time zones (is tzdata missing?): {0}"};
constexpr Phrase unknown{
    "这台电脑无法识别时区「{0}」；请写成 Asia/Shanghai 这样的名称",
    "this machine knows no time zone {0}; zones have names such as Asia/Shanghai"};
constexpr Phrase other{
    "「{0}」的数据按时区 {1} 保存，以后的导入不能改用 {2}；请去掉 --time-zone",
    "{0}'s data is kept in the time zone {1}, and a later import cannot be in {2}: leave "
    "--time-zone out"};
constexpr Phrase unzoned{
    "{0} 里已有数据，但没有记下时区，再次导入会把每个样本存成两份。要重新导入，请先移走文件夹 "
    "{1}；如果名册里有 id 为 {2} 的成员，也请删掉",
    "{0} holds data without a note of its time zone, and another import would store each "
    "sample "
    "twice. For a fresh import, move the folder {1} away, and where the roster names the "
    "member "
    "{2}, remove that entry"};
constexpr Phrase unnamed{
    "这台电脑的时区没有名称；请用 --time-zone 指定你居住地的时区，例如 --time-zone "
    "Asia/Shanghai",
    "this machine's time zone has no name: add --time-zone with the zone you live in, such as "
    "--time-zone Asia/Shanghai"};
constexpr Phrase elsewhere{
    "导出时手机的时区偏移是 {0}，这台电脑是 {1}；请加上 --time-zone {2}，或者把 {2} "
    "换成你居住地的时区",
    "the export was made at {0}, this machine is at {1}: add --time-zone {2}, or the zone you "
    "live in"};

}  // namespace phrases

/// "+0800".
std::string offsetText(const Stamp& stamp) {
  return std::string(StampText(stamp).text().substr(20));
}

/// The first of some well-known zones with the same offset as `exported` at that moment.
std::string likelyZone(const Stamp& exported) {
  constexpr std::array<std::string_view, 41> zones{
      "Asia/Shanghai",       "Asia/Kolkata",        "America/New_York",   "America/Chicago",
      "America/Los_Angeles", "America/Denver",      "Europe/Berlin",      "Europe/London",
      "Asia/Tokyo",          "America/Sao_Paulo",   "Asia/Jakarta",       "Africa/Lagos",
      "Asia/Karachi",        "Asia/Dhaka",          "Europe/Moscow",      "Africa/Cairo",
      "Asia/Dubai",          "Asia/Tehran",         "Asia/Kabul",         "Asia/Yangon",
      "Asia/Kathmandu",      "Australia/Sydney",    "Australia/Brisbane", "Australia/Adelaide",
      "Australia/Darwin",    "Pacific/Auckland",    "Pacific/Fiji",       "Pacific/Noumea",
      "Pacific/Tongatapu",   "Pacific/Kiritimati",  "America/Halifax",    "America/St_Johns",
      "America/Anchorage",   "Pacific/Honolulu",    "Pacific/Pago_Pago",  "America/Phoenix",
      "Africa/Abidjan",      "America/Mexico_City", "Atlantic/Azores",    "America/Nuuk",
      "Pacific/Marquesas"};
  for (const std::string_view name : zones) {
    std::optional<TimeZone> zone = TimeZone::named(name);
    if (zone && zone->stamp(exported.moment) == exported) return std::string(name);
  }
  return "Area/City";
}

}  // namespace

namespace {

/// A missing zone database has a more useful message than an unknown zone.
void requireZones() {
  const std::filesystem::path folder = System::zoneFolder();
  if (!std::filesystem::is_directory(folder)) throw Failure(phrases::noZones, {folder.string()});
}

}  // namespace

TimeZone knownZone(const std::string& name) {
  requireZones();
  std::optional<TimeZone> zone = TimeZone::named(name);
  if (!zone) throw Failure(phrases::unknown, {name});
  return *zone;
}

namespace {

/// The zone name stored by an earlier import; absent when this import may choose.
std::optional<std::string> keptZone(const MemberZone::Hints& hints) {
  const ImportedZone::State state = ImportedZone::of(hints.database.string(), hints.interrupted);
  if (!state.name && state.holdsSamples) {
    throw Failure(phrases::unzoned,
                  {hints.database.string(), hints.database.parent_path().string(), hints.id});
  }
  if (!state.name || !hints.asked || *hints.asked == *state.name) return state.name;
  if (!state.holdsSamples) return std::nullopt;
  throw Failure(phrases::other, {hints.member, *state.name, *hints.asked});
}

std::string chosenZone(const MemberZone::Hints& hints, bool& assumed) {
  if (std::optional<std::string> kept = keptZone(hints)) return *kept;
  if (hints.asked) return *hints.asked;
  requireZones();
  if (!hints.machine) throw Failure(phrases::unnamed);
  assumed = true;
  return *hints.machine;
}

}  // namespace

MemberZone::MemberZone(const Hints& hints) : timeZone(knownZone(chosenZone(hints, assumed))) {}

void MemberZone::confirm(const std::optional<Stamp>& exported) {
  if (!assumed || !exported) return;
  const Stamp here = timeZone.stamp(exported->moment);
  if (here != *exported) {
    throw Failure(phrases::elsewhere,
                  {offsetText(*exported), offsetText(here), likelyZone(*exported)});
  }
  assumed = false;
}
