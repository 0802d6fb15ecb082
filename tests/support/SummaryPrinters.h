#pragma once
// The output of summary records and their parts in a failing test.

#include "summary/SummaryEngine.h"
#include "summary/SummaryModel.h"

#include <nlohmann/json.hpp>

#include <ostream>

inline void PrintTo(const Metric& metric, std::ostream* stream) {
  *stream << nlohmann::ordered_json(metric).dump();
}

inline void PrintTo(const SummaryCard& card, std::ostream* stream) {
  *stream << nlohmann::ordered_json(card).dump();
}

inline void PrintTo(const SummaryCoverage& coverage, std::ostream* stream) {
  *stream << nlohmann::ordered_json(coverage).dump();
}

inline void PrintTo(const Insight& insight, std::ostream* stream) {
  *stream << nlohmann::ordered_json(insight).dump();
}

inline void PrintTo(const Figure& figure, std::ostream* stream) {
  *stream << figure.value << " of " << figure.samples;
}

inline void PrintTo(const DayRange& window, std::ostream* stream) {
  *stream << window.from << " ~ " << window.to;
}

inline void PrintTo(const Night& night, std::ostream* stream) {
  *stream << night.minutes << " min, to bed " << night.bedMinutes << " min after 18:00, up "
          << night.wakeMinutes << " min after 00:00";
}
