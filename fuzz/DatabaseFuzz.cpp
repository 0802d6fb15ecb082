// A member's database under all tools; the input is the bytes of the file.

#include "SampleDatabase.h"
#include "ServedSession.h"
#include "Target.h"
#include "examples/Examples.h"
#include "platform/Files.h"
#include "support/Household.h"

#include <nlohmann/json.hpp>

namespace {

/// Two members: one with the input as database, one with a valid database.
class Neighbours {
public:
  Neighbours() {
    damaged = &household.add("1", "Ann");
    fillSample(household.add("2", "Ben"));
    muteAccessLog(household.dataRoot());
    soundReply = replies(soundRequest).at(0);
  }

  const std::string& path() const { return damaged->path(); }

  /// Replaces the damaged file with exactly these bytes, and removes the files beside it.
  void damage(std::string_view bytes) const {
    for (const char* suffix : {"-wal", "-shm", "-journal"}) {
      std::filesystem::remove(path() + suffix);
    }
    damaged->replaceFile(std::string(bytes));
  }

  std::vector<std::string> replies(std::string_view input) const {
    return repliesTo({.dataRoot = household.dataRoot()}, input);
  }

  static constexpr std::string_view soundRequest =
      R"({"id":"sound","method":"tools/call","params":{"name":"get_workouts","arguments":{"person":"Ben","from":"2000-01-01"}}})"
      "\n";
  std::string soundReply;

private:
  Household household;
  TestDatabase* damaged;
};

/// Every example call for the damaged file and its days, then calls for the other member.
std::string requests() {
  const nlohmann::json ours{
      {"from", "2023-01-01"}, {"date", "2024-03-01"}, {"workout_id", sampleWorkout}};
  std::string lines;
  for (const Example& example : Examples::all()) {
    nlohmann::json request{{"id", example.name}, {"method", "tools/call"}};
    request["params"] = {{"name", example.tool}, {"arguments", example.argumentsWith(ours)}};
    lines += request.dump() + "\n";
  }
  lines += R"({"id":"resource","method":"resources/read","params":{"uri":"larkspur://1/overview"}})"
           "\n";
  return lines.append(Neighbours::soundRequest);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Neighbours neighbours;
  static const std::string lines = requests();
  const std::string_view bytes = textOf(data, size);
  neighbours.damage(bytes);

  const std::vector<std::string> replies = neighbours.replies(lines);

  requireReplies(lines, replies);
  require(replies.back() == neighbours.soundReply, "the next member's answer is right");
  require(fileContents(neighbours.path()) == bytes, "the file keeps its bytes");
  return 0;
}
