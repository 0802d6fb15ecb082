// Calls every tool on a large household and runs the bare queries for comparison:
//
//   larkspur_bench [benchmark options] <data root>
//
// scripts/bench makes the data root. A benchmark is named "<what>/ours" or "<what>/floor". Its
// counter "target" is the permitted ratio of the tool to the baseline, the floor. With
// --benchmark_repetitions the medians count.

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

/// The number of calls in a batch of about ten milliseconds, 1 to 100. In a shorter time the clock
/// and the scheduler have too much influence.
template <typename Call>
int batchOf(Call call) {
  using Milliseconds = std::chrono::duration<double, std::milli>;
  call();  // fills the disk cache for the following calls
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
