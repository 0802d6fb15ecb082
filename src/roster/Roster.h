#pragma once
// The members of this household, from the receiver application's "members.json".

#include "platform/Clock.h"
#include "platform/Logger.h"
#include "roster/IngestPayload.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A phone paired with a member. Moments are seconds since 1970. JSON keys are the field names.
struct PairedDevice {
  std::string token;
  std::optional<std::string> model;
  std::optional<std::string> deviceName;
  double pairedAt = 0;
  std::optional<double> lastSeenAt;
  std::optional<HistoryHint> history;
  std::optional<std::string> key;  ///< key material in the receiver's format; not used here

  bool operator==(const PairedDevice&) const = default;
};

/// A person with data on this computer. JSON keys are the field names.
struct Member {
  std::string id;                    ///< stable and unique
  std::string name;                  ///< for display; not unique
  std::string dbPath;                ///< full path of the member's database, used unchanged
  double createdAt = 0;              ///< seconds since 1970
  std::optional<double> lastSyncAt;  ///< seconds since 1970; absent before the first sync
  std::vector<PairedDevice> devices;
  std::optional<BackfillState> backfill;

  bool operator==(const Member&) const = default;
};

/// Decoding and encoding follow the rules of roster/IngestPayload.h.
void from_json(const nlohmann::json& json, PairedDevice& device);
void from_json(const nlohmann::json& json, Member& member);
void to_json(nlohmann::ordered_json& json, const PairedDevice& device);
void to_json(nlohmann::ordered_json& json, const Member& member);

/// The list of members, read from its file once and never written back.
class Roster {
public:
  /// The whole file as a record.
  struct File {
    std::int64_t version = 0;  ///< of the format; not checked
    std::vector<Member> members;

    bool operator==(const File&) const = default;
  };

  /// An empty roster for the file at `path`. `log` outlives the roster.
  Roster(std::filesystem::path path, Logger& log, Clock clock);

  /// Reads the file and replaces the members. A missing or unreadable file changes nothing. An
  /// invalid roster is renamed: ".broken-" and the time are appended to its name. So the next start
  /// has no members, and the file is kept. This case is logged and throws ReceiverError. A file
  /// that does not fit into memory stays in place and throws std::bad_alloc.
  void load();

  /// A copy of all members, in the order of the file.
  std::vector<Member> members() const;

  /// The first member with exactly this id; `nullopt` when there is none.
  std::optional<Member> member(std::string_view id) const;

private:
  mutable std::mutex lock;
  std::filesystem::path path;
  Logger& log;
  Clock clock;
  std::vector<Member> all;
};

void from_json(const nlohmann::json& json, Roster::File& file);
void to_json(nlohmann::ordered_json& json, const Roster::File& file);
