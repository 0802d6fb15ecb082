#include "roster/Roster.h"
#include "platform/ControlProtocol.h"
#include "platform/Files.h"
#include "platform/JsonFields.h"
#include "platform/MemoryReserve.h"
#include "platform/Text.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <system_error>
#include <utility>

void from_json(const nlohmann::json& json, PairedDevice& device) {
  device.token = JsonFields::required<std::string>(json, "token");
  device.model = JsonFields::optional<std::string>(json, "model");
  device.deviceName = JsonFields::optional<std::string>(json, "deviceName");
  device.pairedAt = JsonFields::required<double>(json, "pairedAt");
  device.lastSeenAt = JsonFields::optional<double>(json, "lastSeenAt");
  device.history = JsonFields::optional<HistoryHint>(json, "history");
  device.key = JsonFields::optional<std::string>(json, "key");
}

void from_json(const nlohmann::json& json, Member& member) {
  member.id = JsonFields::required<std::string>(json, "id");
  member.name = JsonFields::required<std::string>(json, "name");
  member.dbPath = JsonFields::required<std::string>(json, "dbPath");
  member.createdAt = JsonFields::required<double>(json, "createdAt");
  member.lastSyncAt = JsonFields::optional<double>(json, "lastSyncAt");
  member.devices = JsonFields::required<std::vector<PairedDevice>>(json, "devices");
  member.backfill = JsonFields::optional<BackfillState>(json, "backfill");
}

void from_json(const nlohmann::json& json, Roster::File& file) {
  file.version = JsonFields::required<std::int64_t>(json, "version");
  file.members = JsonFields::required<std::vector<Member>>(json, "members");
}

void to_json(nlohmann::ordered_json& json, const PairedDevice& device) {
  json = nlohmann::ordered_json::object();
  json["token"] = device.token;
  JsonFields::setIfPresent(json, "model", device.model);
  JsonFields::setIfPresent(json, "deviceName", device.deviceName);
  json["pairedAt"] = device.pairedAt;
  JsonFields::setIfPresent(json, "lastSeenAt", device.lastSeenAt);
  JsonFields::setIfPresent(json, "history", device.history);
  JsonFields::setIfPresent(json, "key", device.key);
}

void to_json(nlohmann::ordered_json& json, const Member& member) {
  json = nlohmann::ordered_json::object();
  json["id"] = member.id;
  json["name"] = member.name;
  json["dbPath"] = member.dbPath;
  json["createdAt"] = member.createdAt;
  JsonFields::setIfPresent(json, "lastSyncAt", member.lastSyncAt);
  json["devices"] = member.devices;
  JsonFields::setIfPresent(json, "backfill", member.backfill);
}

void to_json(nlohmann::ordered_json& json, const Roster::File& file) {
  json = nlohmann::ordered_json::object();
  json["version"] = file.version;
  json["members"] = file.members;
}

Roster::Roster(std::filesystem::path path, Logger& log, Clock clock)
    : path(std::move(path)), log(log), clock(std::move(clock)) {}

namespace {

/// Moves the unreadable roster at `path` out of the way and returns what to say about it.
std::string setAside(const std::filesystem::path& path, double now, const DecodingError& error) {
  std::filesystem::path backup = path;
  backup += ".broken-" + std::to_string(static_cast<std::int64_t>(now));
  std::error_code ignored;
  std::filesystem::rename(path, backup, ignored);
  return "名册解析失败(已备份到 " + backup.string() + "):" + repaired(error.what());
}

}  // namespace

void Roster::load() {
  const std::optional<std::string> contents = fileContents(path);
  if (!contents) return;
  // The JSON library takes up to so many times the text, and ends the program where it finds no
  // memory to take down again what it built.
  constexpr std::size_t most = 64;
  if (!MemoryReserve::couldHave(most * contents->size())) throw std::bad_alloc();
  File file;
  try {
    file = JsonFields::parsed(*contents).get<File>();
  } catch (const DecodingError& error) {
    const std::string message = setAside(path, clock(), error);
    log.write(Logger::Level::error, message);
    throw ReceiverError(message);
  }
  const std::size_t count = file.members.size();
  {
    const std::lock_guard guard(lock);
    all = std::move(file.members);
  }
  log.write(Logger::Level::info, "名册:" + std::to_string(count) + " 个成员");
}

std::vector<Member> Roster::members() const {
  const std::lock_guard guard(lock);
  return all;
}

std::optional<Member> Roster::member(std::string_view id) const {
  const std::lock_guard guard(lock);
  const auto found = std::ranges::find(all, id, &Member::id);
  if (found == all.end()) return std::nullopt;
  return *found;
}
