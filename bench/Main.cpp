// Calls every tool on a large household, and the bare queries beside it:
//
//   larkspur_bench [benchmark options] <data root>
//
// The data root is one that scripts/bench makes. A benchmark is named "<what>/ours" or
// "<what>/floor"; its counter "target" tells how many times the baseline, the floor, the tool may
// take. With --benchmark_repetitions the medians are what counts.

#include "AddedWorkout.h"
#include "Comparison.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>

namespace {

/// How often a call is made between two looks at the clock: ten milliseconds of it, because the
/// clock and the scheduler weigh too much in a shorter time.
template <typename Call>
int batchOf(Call call) {
  using Milliseconds = std::chrono::duration<double, std::milli>;
  call();  // reads from the disk what the others find in memory
  const auto began = std::chrono::steady_clock::now();
  call();
  const Milliseconds took = std::chrono::steady_clock::now() - began;
  return std::clamp(static_cast<int>(10 / took.count()), 1, 100);
}

template <typename Call>
void registerSide(const Comparison& comparison, const char* side, Call call) {
  const auto measured = [comparison, call](benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(call());
    state.counters["target"] = comparison.target;
    if (comparison.isOfRange) state.counters["isOfRange"] = 1;
  };
  benchmark::RegisterBenchmark((comparison.what + "/" + side).c_str(), measured)
      ->Iterations(batchOf(call))
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
}

void registerPair(const Subject& subject, const Comparison& comparison) {
  nlohmann::json document;
  if (comparison.document) document = nlohmann::json::parse(comparison.document());
  registerSide(comparison, "ours", comparison.ours);
  registerSide(comparison, "floor", [&subject, comparison, document] {
    const int rows = Floor::stepped(subject.member.dbPath, comparison.floor);
    return document.is_null() ? std::to_string(rows) : document.dump();
  });
}

}  // namespace

int main(int count, char* words[]) {
  benchmark::Initialize(&count, words);
  if (count != 2) {
    std::fputs("usage: larkspur_bench [benchmark options] <data root>\n", stderr);
    return 2;
  }
  try {
    Subject subject(words[1]);
    for (const AddedWorkout& workout : {AddedWorkouts::hour, AddedWorkouts::longest}) {
      workout.addOnce(subject.member.dbPath, subject.log);
    }
    for (const Comparison& comparison : comparisons(subject)) registerPair(subject, comparison);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "larkspur_bench: %s\n", error.what());
    return 1;
  }
}
