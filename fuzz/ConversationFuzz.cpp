// A whole conversation about a sample household; the input is the client's bytes.

#include "ServedSession.h"
#include "Target.h"
#include "sample/household/Household.h"
#include "store/HealthStore.h"
#include "support/TemporaryFolder.h"

#include <chrono>
#include <sstream>

namespace {

/// A household of three, written once.
class SampleHousehold {
public:
  SampleHousehold() {
    Options options;
    options.out = dataRoot();
    options.years = 1;
    options.records = 1000;
    std::ostringstream unseen;
    Progress progress(unseen, false, [] { return 0.0; });
    Logger quiet(std::nullopt, Logger::Level::error, false, [] { return 0.0; });
    writeHousehold(options, std::chrono::year{2026} / 11 / 20, unseen, progress);
    muteAccessLog(dataRoot());
    const HealthStore ann((dataRoot() / "members/ann-01/health.db").string(), {}, quiet);
    newest = ann.workoutDetails(std::nullopt, std::nullopt).front().workout_id();
  }

  std::filesystem::path dataRoot() const { return folder / "root"; }

  /// `text` with each "w_newest" replaced by the identifier of Ann's newest workout: mutations
  /// cannot find a hash.
  std::string withWorkout(std::string_view text) const {
    constexpr std::string_view mark = "w_newest";
    std::string replaced;
    for (std::size_t at = text.find(mark); at != std::string_view::npos; at = text.find(mark)) {
      replaced.append(text.substr(0, at)).append(newest);
      text.remove_prefix(at + mark.size());
    }
    return replaced.append(text);
  }

private:
  TemporaryFolder folder;
  std::string newest;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const SampleHousehold household;
  const std::string input = household.withWorkout(textOf(data, size));
  const SummaryLang lang = size % 2 == 0 ? SummaryLang::en : SummaryLang::zh;

  const std::vector<std::string> replies =
      repliesTo({.dataRoot = household.dataRoot(), .lang = lang, .piece = 1 + size % 97}, input);

  requireReplies(input, replies);
  return 0;
}
