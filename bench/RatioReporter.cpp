#include "RatioReporter.h"

#include <iomanip>
#include <ostream>
#include <utility>

RatioReporter::RatioReporter(std::map<std::string, double> targets) : targets(std::move(targets)) {}

bool RatioReporter::ReportContext(const Context&) { return true; }

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) {
    if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") continue;
    const std::string name = run.run_name.function_name;
    const std::size_t slash = name.rfind('/');
    Pair& pair = pairs[name.substr(0, slash)];
    (name.substr(slash + 1) == "ours" ? pair.ours : pair.floor) = run.GetAdjustedRealTime();
  }
}

void RatioReporter::Finalize() {
  std::ostream& out = GetOutputStream();
  out << "| what | ours | floor | ratio | target |\n|---|---|---|---|---|\n" << std::fixed;
  for (const auto& [what, pair] : pairs) {
    out << "| " << what << " | " << std::setprecision(1) << pair.ours << " ms | " << pair.floor
        << " ms | " << std::setprecision(2) << pair.ours / pair.floor << " | " << targets.at(what)
        << " |\n";
  }
}
