// A member's database under all tools: the input is the file's bytes.

#include "SampleDatabase.h"
#include "Session.h"
#include "Target.h"
#include "platform/Files.h"
#include "support/Household.h"

#include <nlohmann/json.hpp>

namespace {

/// Two members: the one whose file the inputs are, and one whose file is sound.
class Neighbours {
public:
  Neighbours() {
    damaged = &household.add("1", "Ann");
    fillSample(household.add("2", "Ben"));
    muteAccessLog(household.dataRoot());
    soundReply = replies(soundRequest).at(0);
  }

  const std::string& path() const { return damaged->path(); }

  /// Makes the damaged file one of exactly these bytes, with nothing beside it.
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

std::string call(const char* tool, nlohmann::json arguments) {
  arguments["person"] = "Ann";
  const nlohmann::json request{{"id", tool},
                               {"method", "tools/call"},
                               {"params", {{"name", tool}, {"arguments", std::move(arguments)}}}};
  return request.dump() + "\n";
}

/// Every tool about the damaged file, every way in which a metric is computed, then the other
/// member.
std::string requests() {
  std::string lines = call("list_persons", {}) + call("get_overview", {});
  for (const char* metric : {"steps", "weight", "sleep"}) {
    lines += call("get_trend", {{"metric", metric}, {"from", "2023-01-01"}, {"to", "2024-12-31"}});
  }
  lines += call("get_day", {{"date", "2024-03-01"}});
  for (const char* format : {"text", "json"}) {
    lines += call("get_workouts", {{"from", "2000-01-01"}, {"format", format}});
  }
  lines += call("get_workout_heart_rate", {{"workout_id", sampleWorkout}});
  lines += call("compare_periods",
                {{"metric", "steps"},
                 {"a_from", "2023-01-01"},
                 {"a_to", "2023-12-31"},
                 {"b_from", "2024-01-01"},
                 {"b_to", "2024-12-31"}});
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
