#pragma once
// One table instead of a list of times: what, ours, floor, ratio, target.

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

/// Collects the medians of benchmarks that come in pairs, "<what>/ours" and "<what>/floor", and
/// prints their ratios at the end.
class RatioReporter final : public benchmark::BenchmarkReporter {
public:
  /// `targets` says how many times the floor each "<what>" may take.
  explicit RatioReporter(std::map<std::string, double> targets);

  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

private:
  struct Pair {
    double ours = 0;   ///< milliseconds
    double floor = 0;  ///< milliseconds
  };

  std::map<std::string, double> targets;
  std::map<std::string, Pair> pairs;
};
