#include "sample/household/RosterWriter.h"
#include "platform/AppleFormat.h"
#include "platform/DurableFile.h"
#include "sample/life/Random.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>

std::filesystem::path databasePath(const std::filesystem::path& dataRoot, const Person& person) {
  return dataRoot / "members" / person.id / "health.db";
}

namespace {

constexpr double dayLength = 86400;

/// 32 hexadecimal digits in the form of a device's token, without any access rights.
std::string tokenOf(const Person& person, std::uint64_t seed, std::string_view device) {
  Random random = Random(seed).fork(person.id).fork("token").fork(device);
  char digits[33];
  std::snprintf(digits,
                sizeof digits,
                "%016llx%016llx",
                static_cast<unsigned long long>(random.next()),
                static_cast<unsigned long long>(random.next()));
  return digits;
}

using AppleFormat::dayText;

/// A phone with all fields, and its predecessor with few.
std::vector<PairedDevice> phonesOf(const Person& person, const HistoryOptions& options,
                                   double sync) {
  const std::string first = dayText(firstDay(person, options));
  return {{.token = tokenOf(person, options.seed, "phone"),
           .model = "iPhone14,5",
           .deviceName = person.name + "\u2019s iPhone",
           .pairedAt = sync - 200 * dayLength,
           .lastSeenAt = sync + 12.5,
           .history = HistoryHint{.through = dayText(options.today), .earliest = first},
           .key = tokenOf(person, options.seed, "key")},
          {.token = tokenOf(person, options.seed, "old phone"),
           .model = "iPhone11,8",
           .deviceName = std::nullopt,
           .pairedAt = sync - 700 * dayLength,
           .lastSeenAt = std::nullopt,
           .history = std::nullopt,
           .key = std::nullopt}};
}

PairedDevice onlyPhoneOf(const Person& person, const HistoryOptions& options, double sync) {
  return {.token = tokenOf(person, options.seed, "phone"),
          .model = std::nullopt,
          .deviceName = person.name + "\u2019s iPhone",
          .pairedAt = sync - 30 * dayLength,
          .lastSeenAt = sync,
          .history = HistoryHint{.through = dayText(options.today), .earliest = std::nullopt},
          .key = std::nullopt};
}

/// Ann's history is complete; that of later members with a watch is still coming in.
BackfillState backfillWithWatch(const Person& person, std::size_t position,
                                const HistoryOptions& options) {
  const CivilDay first = firstDay(person, options);
  if (position == 0) {
    return {.frontier = dayText(first),
            .earliest = dayText(first),
            .done = true,
            .completeFrom = dayText(first)};
  }
  return {.frontier = dayText(first),
          .earliest = dayText(AppleFormat::daysBefore(first, 900)),
          .done = false,
          .completeFrom = dayText(AppleFormat::daysAfter(first, 30))};
}

/// Ben's phone has no backfill state, like phones paired before it was recorded; later phones have
/// finished their backfill.
std::optional<BackfillState> backfillOfPhone(std::size_t position) {
  if (position == 1) return std::nullopt;
  return BackfillState{.frontier = std::nullopt,
                       .earliest = std::nullopt,
                       .done = true,
                       .completeFrom = std::nullopt};
}

}  // namespace

Member memberOf(const Person& person, std::size_t position, const HistoryOptions& options,
                const std::filesystem::path& database) {
  const auto sync = static_cast<double>(lastSync(options.today).moment);
  Member member{.id = person.id,
                .name = person.name,
                .dbPath = database.string(),
                .createdAt = sync - 700 * dayLength,
                .lastSyncAt = sync,
                .devices = {},
                .backfill = std::nullopt};
  switch (person.kind) {
    case Person::Kind::watchAndPhone:
      member.devices = phonesOf(person, options, sync);
      member.backfill = backfillWithWatch(person, position, options);
      break;
    case Person::Kind::phoneAlone:
      member.createdAt = sync - 30 * dayLength;
      member.devices = {onlyPhoneOf(person, options, sync)};
      member.backfill = backfillOfPhone(position);
      break;
    case Person::Kind::justPaired:
      member.createdAt = sync - 90;
      member.lastSyncAt.reset();
      member.devices = {{.token = tokenOf(person, options.seed, "phone"),
                         .model = std::nullopt,
                         .deviceName = std::nullopt,
                         .pairedAt = sync - 60,
                         .lastSeenAt = std::nullopt,
                         .history = std::nullopt,
                         .key = std::nullopt}};
      member.backfill = BackfillState{.frontier = dayText(options.today),
                                      .earliest = "2019-05-02",
                                      .done = false,
                                      .completeFrom = std::nullopt};
      break;
  }
  return member;
}

Member importedMemberOf(const Person& person, const HistoryOptions& options,
                        const std::filesystem::path& database,
                        const std::optional<std::string>& firstDay) {
  const auto exported = static_cast<double>(lastSync(options.today).moment);
  return {.id = person.id,
          .name = person.name,
          .dbPath = database.string(),
          .createdAt = exported,
          .lastSyncAt = exported,
          .devices = {},
          .backfill = BackfillState{
              .frontier = firstDay, .earliest = firstDay, .done = true, .completeFrom = firstDay}};
}

void writeRoster(const std::filesystem::path& path, const Roster::File& file) {
  replaceDurably(path, nlohmann::ordered_json(file).dump(2) + "\n");
}
