#include "import/RosterDocument.h"
#include "import/DurableFile.h"
#include "import/ImportError.h"
#include "platform/Files.h"
#include "platform/JsonFields.h"
#include "platform/Text.h"

#include <algorithm>
#include <system_error>
#include <utility>

struct RosterDocument::Document {
  nlohmann::ordered_json json;
};

namespace {

constexpr Phrase unreadable{.zh = "名册 {0} 读不了,原样没动:{1}",
                            .en = "the roster {0} cannot be read and was left alone: {1}"};
static_assert(inBothLanguages(unreadable));

/// The text of the roster at `path`; `nullopt` when there is none.
std::optional<std::string> rosterText(const std::filesystem::path& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::symlink_status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) return std::nullopt;
  std::optional<std::string> text = fileContents(path);
  if (!text) throw ImportError(unreadable, {path.string(), "?"});
  return text;
}

}  // namespace

RosterDocument::RosterDocument(std::filesystem::path path)
    : path(std::move(path)), document(std::make_unique<Document>()) {
  document->json = {{"version", 1}, {"members", nlohmann::ordered_json::array()}};
  const std::optional<std::string> text = rosterText(this->path);
  if (!text) return;
  try {
    file = JsonFields::parsed(*text).get<Roster::File>();
    document->json = nlohmann::ordered_json::parse(*text);
  } catch (const std::exception& error) {
    throw ImportError(unreadable, {this->path.string(), repaired(error.what())});
  }
}

RosterDocument::~RosterDocument() = default;

namespace {

/// The entry of that id among the array `members`, appended when there is none.
nlohmann::ordered_json& entryOf(nlohmann::ordered_json& members, const ImportedMember& member) {
  const auto found = std::ranges::find_if(members, [&member](const nlohmann::ordered_json& entry) {
    return entry.at("id") == member.id;
  });
  if (found != members.end()) return *found;
  members.push_back({{"id", member.id},
                     {"name", member.name},
                     {"dbPath", member.database.string()},
                     {"createdAt", member.now},
                     {"devices", nlohmann::ordered_json::array()}});
  return members.back();
}

}  // namespace

void RosterDocument::put(const ImportedMember& member) {
  nlohmann::ordered_json& entry = entryOf(document->json.at("members"), member);
  if (member.exportedAt) {
    const nlohmann::ordered_json before = entry.value("lastSyncAt", nlohmann::ordered_json());
    const bool later = before.is_number() && before.get<double>() > *member.exportedAt;
    if (!later) entry["lastSyncAt"] = *member.exportedAt;
  }
  nlohmann::ordered_json& backfill = entry["backfill"];
  if (!backfill.is_object()) backfill = nlohmann::ordered_json::object();
  backfill["done"] = true;
  if (!member.firstDay) return;
  for (const char* key : {"frontier", "earliest", "completeFrom"}) backfill[key] = *member.firstDay;
}

void RosterDocument::write() const { replaceDurably(path, document->json.dump(2) + "\n"); }
