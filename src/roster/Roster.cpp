#include "roster/Roster.h"
#include "platform/Files.h"
#include "platform/JsonFields.h"
#include "platform/MemoryReserve.h"
#include "platform/ReceiverError.h"
#include "platform/Text.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <system_error>
#include <utility>

using JsonFields::Field;

namespace {

constexpr std::tuple deviceFields{Field{"token", &PairedDevice::token},
                                  Field{"model", &PairedDevice::model},
                                  Field{"deviceName", &PairedDevice::deviceName},
                                  Field{"pairedAt", &PairedDevice::pairedAt},
                                  Field{"lastSeenAt", &PairedDevice::lastSeenAt},
                                  Field{"history", &PairedDevice::history},
                                  Field{"key", &PairedDevice::key}};

constexpr std::tuple memberFields{Field{"id", &Member::id},
                                  Field{"name", &Member::name},
                                  Field{"dbPath", &Member::dbPath},
                                  Field{"createdAt", &Member::createdAt},
                                  Field{"lastSyncAt", &Member::lastSyncAt},
                                  Field{"devices", &Member::devices},
                                  Field{"backfill", &Member::backfill}};

constexpr std::tuple fileFields{Field{"version", &Roster::File::version},
                                Field{"members", &Roster::File::members}};

}  // namespace

void from_json(const nlohmann::json& json, PairedDevice& device) {
  JsonFields::read(json, device, deviceFields);
}

void to_json(nlohmann::ordered_json& json, const PairedDevice& device) {
  JsonFields::write(json, device, deviceFields);
}

void from_json(const nlohmann::json& json, Member& member) {
  JsonFields::read(json, member, memberFields);
}

void to_json(nlohmann::ordered_json& json, const Member& member) {
  JsonFields::write(json, member, memberFields);
}

void from_json(const nlohmann::json& json, Roster::File& file) {
  JsonFields::read(json, file, fileFields);
}

void to_json(nlohmann::ordered_json& json, const Roster::File& file) {
  JsonFields::write(json, file, fileFields);
}

Roster::Roster(std::filesystem::path path, Logger& log, Clock clock)
    : path(std::move(path)), log(log), clock(std::move(clock)) {}

namespace {

/// Renames the invalid roster at `path` and returns the message about it.
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
  // Parsing takes up to 64 times the size of the text. The JSON library terminates the program if
  // it runs out of memory while it destroys a partial result.
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
