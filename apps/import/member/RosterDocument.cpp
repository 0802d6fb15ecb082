#include "import/member/RosterDocument.h"
#include "import/Failure.h"
#include "platform/DurableFile.h"
#include "platform/Files.h"
#include "platform/JsonFields.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>

namespace {

namespace phrases {

constexpr Phrase unreadable{"名册 {0} 无法读取，未作改动：{1}",
                            "the roster {0} cannot be read and was left alone: {1}"};
constexpr Phrase noFile{"名册 {0} 不是普通文件，未作改动",
                        "the roster {0} is no regular file and was left alone"};
constexpr Phrase tooDeep{"名册 {0} 的嵌套超过 {1} 层，未作改动",
                         "the roster {0} is nested more than {1} deep and was left alone"};

}  // namespace phrases

/// The system's reason for the failure to read the file at `path`, which must have just occurred.
std::string reasonOf(const std::filesystem::path& path) {
  errno = 0;
  const std::ifstream file(path, std::ios::binary);
  return std::generic_category().message(file && errno == 0 ? EIO : errno);
}

/// The text of the roster at `path`; `nullopt` when there is none.
std::optional<std::string> rosterText(const std::filesystem::path& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::symlink_status(path, error);
  if (status.type() == std::filesystem::file_type::not_found) return std::nullopt;
  if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error)) {
    throw Failure(phrases::noFile, {path.string()});
  }
  std::optional<std::string> text = fileContents(path);
  if (!text) throw Failure(phrases::unreadable, {path.string(), reasonOf(path)});
  return text;
}

/// Writing a document takes stack for every level and indents each level further. A depth of 30,000
/// would give 1.8 GB of text.
constexpr int deepestValue = 100;

/// Whether arrays and objects in `text` are nested deeper than that.
bool isTooDeep(std::string_view text) {
  int depth = 0;
  bool inString = false;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const char byte = text[index];
    if (inString) {
      if (byte == '\\') ++index;
      if (byte == '"') inString = false;
    } else if (byte == '"') {
      inString = true;
    } else if (byte == '{' || byte == '[') {
      if (++depth > deepestValue) return true;
    } else if (byte == '}' || byte == ']') {
      --depth;
    }
  }
  return false;
}

}  // namespace

RosterDocument::RosterDocument(std::filesystem::path path)
    : path(std::move(path)), document(std::make_unique<nlohmann::ordered_json>()) {
  *document = {{"version", 1}, {"members", nlohmann::ordered_json::array()}};
  const std::optional<std::string> text = rosterText(this->path);
  if (!text) return;
  if (isTooDeep(*text)) {
    throw Failure(phrases::tooDeep, {this->path.string(), std::to_string(deepestValue)});
  }
  try {
    file = JsonFields::parsed(*text).get<Roster::File>();
    *document = nlohmann::ordered_json::parse(*text);
  } catch (const std::exception& error) {
    throw Failure(phrases::unreadable, {this->path.string(), repaired(error.what())});
  }
}

RosterDocument::~RosterDocument() = default;

namespace {

/// The entry with that id in the array `members`; appended when it is missing.
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
  nlohmann::ordered_json& entry = entryOf(document->at("members"), member);
  if (member.exportedAt) {
    const nlohmann::ordered_json before = entry.value("lastSyncAt", nlohmann::ordered_json());
    const bool later = before.is_number() && before.get<double>() > *member.exportedAt &&
                       before.get<double>() <= member.now;
    if (!later) entry["lastSyncAt"] = *member.exportedAt;
  }
  nlohmann::ordered_json& backfill = entry["backfill"];
  if (!backfill.is_object()) backfill = nlohmann::ordered_json::object();
  backfill["done"] = true;
  if (!member.firstDay) return;
  for (const char* key : {"frontier", "earliest", "completeFrom"}) backfill[key] = *member.firstDay;
}

void RosterDocument::write() const { replaceDurably(path, document->dump(2) + "\n"); }
