// The roster file; the input is its bytes.

#include "ServedSession.h"
#include "Target.h"
#include "platform/Files.h"
#include "platform/JsonFields.h"
#include "platform/ReceiverError.h"
#include "roster/Roster.h"
#include "support/TemporaryFolder.h"

#include <nlohmann/json.hpp>

namespace {

constexpr double now = 1710676800;

std::optional<Roster::File> decoded(const std::string& text) {
  try {
    return JsonFields::parsed(text).get<Roster::File>();
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

bool loads(Roster& roster) {
  try {
    roster.load();
    return true;
  } catch (const ReceiverError&) {
    return false;
  }
}

/// Sends a server on `dataRoot` requests about its members that open no database: the paths of the
/// databases are hostile too.
void requireAnswers(const std::filesystem::path& dataRoot, std::size_t memberCount) {
  const std::string requests =
      R"({"id":1,"method":"resources/list"})"
      "\n"
      R"({"id":2,"method":"resources/read","params":{"uri":"larkspur://nobody/overview"}})"
      "\n"
      R"({"id":3,"method":"tools/call","params":{"name":"get_trend","arguments":{"person":" "}}})"
      "\n";
  const std::vector<std::string> replies = repliesTo({.dataRoot = dataRoot}, requests);
  requireReplies(requests, replies);
  const nlohmann::json resources = nlohmann::json::parse(replies.front());
  require(resources.at("result").at("resources").size() == memberCount,
          "every member has a resource");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const TemporaryFolder folder;
  static const bool muted = (muteAccessLog(folder.path()), true);
  const std::string text(textOf(data, size));

  const std::optional<Roster::File> file = decoded(text);
  if (muted && file) {
    require(decoded(nlohmann::ordered_json(*file).dump()) == file,
            "a roster that is written out reads back the same");
  }

  const std::filesystem::path path = folder.write("members.json", text);
  const std::filesystem::path backup = path.string() + ".broken-1710676800";
  Logger log(std::nullopt, Logger::Level::error, false, [] { return now; });
  Roster roster(path, log, [] { return now; });
  require(loads(roster) == file.has_value(), "a file loads exactly when it is a roster");
  if (file) {
    require(roster.members() == file->members, "the members are those of the file");
    requireAnswers(folder.path(), file->members.size());
  } else {
    require(roster.members().empty(), "a file that is no roster brings no members");
    require(!std::filesystem::exists(path), "a file that is no roster is moved aside");
    require(fileContents(backup) == text, "what was moved aside is unchanged");
  }
  return 0;
}
