// Calls every tool on a large household, and the bare queries beside it:
//
//   larkspur_bench [benchmark options] <data root>
//
// The data root is one that scripts/bench makes. A benchmark is named "<what>/ours" or
// "<what>/floor"; its counter "target" tells how many times the floor the tool may take. With
// --benchmark_repetitions the medians are what counts.

#include "AddedWorkout.h"
#include "Comparison.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>

namespace {

void registerPair(const Subject& subject, const Comparison& comparison) {
  const auto ours = [comparison](benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(comparison.ours());
    state.counters["target"] = comparison.target;
  };
  const auto floor = [&subject, comparison](benchmark::State& state) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(Floor::stepped(subject.member.dbPath, comparison.floor));
    }
    state.counters["target"] = comparison.target;
  };
  for (auto* registered :
       {benchmark::RegisterBenchmark((comparison.what + "/ours").c_str(), ours),
        benchmark::RegisterBenchmark((comparison.what + "/floor").c_str(), floor)}) {
    registered->Iterations(1)->Unit(benchmark::kMillisecond)->UseRealTime();
  }
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
