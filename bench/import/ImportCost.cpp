#include "bench/import/ImportCost.h"
#include "bench/import/BareInsertion.h"
#include "bench/import/BareParse.h"
#include "bench/process/Child.h"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace {

/// The files of one round.
struct Scratch {
  explicit Scratch(const std::filesystem::path& folder)
      : dataRoot(folder / "imported"), bare(folder / "bare") {
    clear();
  }
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(dataRoot, ignored);
    std::filesystem::remove_all(bare, ignored);
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  /// Removes the files. With a database from an earlier round, every row would be a duplicate.
  void clear() const {
    std::filesystem::remove_all(dataRoot);
    std::filesystem::remove_all(bare);
  }

  std::filesystem::path dataRoot;
  std::filesystem::path bare;
};

struct Run {
  Cost cost;
  std::int64_t peakBytes;
};

constexpr const char* memberID = "ann";

Run run(const std::filesystem::path& importer, const std::filesystem::path& source,
        const Scratch& scratch) {
  const CostMeter meter;
  Child child({importer,
               "--data-root",
               scratch.dataRoot,
               "--member",
               "Ann",
               "--id",
               memberID,
               "--time-zone",
               "Asia/Shanghai",
               source});
  const Child::Ending ending = child.ending();
  if (!ending.succeeded) throw std::runtime_error("the import of " + source.string() + " failed");
  return {.cost = {.processor = ending.processorSeconds, .elapsed = meter.taken().elapsed},
          .peakBytes = ending.peakBytes};
}

Cost floorOf(const std::filesystem::path& source, const Scratch& scratch) {
  const std::filesystem::path database = scratch.dataRoot / "members" / memberID / "health.db";
  Cost cost = bareParse(source);
  cost += bareInsertion(database, scratch.bare / "health.db");
  return cost;
}

/// The costs of one side, round by round.
class Costs {
public:
  void add(const Cost& cost) {
    processor.push_back(cost.processor);
    elapsed.push_back(cost.elapsed);
  }
  Cost middle() const { return {.processor = ::middle(processor), .elapsed = ::middle(elapsed)}; }

private:
  std::vector<double> processor;
  std::vector<double> elapsed;
};

}  // namespace

std::vector<Measurement> ImportCost::measured(const std::filesystem::path& importer,
                                              const std::filesystem::path& source) {
  constexpr int rounds = 3;
  constexpr double mebibyte = 1024 * 1024;
  const Scratch scratch(source.parent_path());
  Costs ours;
  Costs floor;
  std::optional<std::int64_t> peakBytes;
  for (int round = 0; round < rounds; ++round) {
    scratch.clear();
    const Run imported = run(importer, source, scratch);
    // Only the first round counts: this process grows, and the system would count its memory as the
    // child's.
    if (!peakBytes) peakBytes = imported.peakBytes;
    ours.add(imported.cost);
    floor.add(floorOf(source, scratch));
  }
  return {{.what = "import of " + source.filename().string(),
           .ours = ours.middle().processor,
           .floor = floor.middle().processor,
           .target = 1.5,
           .unit = "s",
           .elapsed = Elapsed{.ours = ours.middle().elapsed, .floor = floor.middle().elapsed}},
          {.what = "memory, larkspur-import",
           .ours = static_cast<double>(*peakBytes) / mebibyte,
           .floor = std::nullopt,
           .target = 64,
           .unit = "MiB"}};
}
