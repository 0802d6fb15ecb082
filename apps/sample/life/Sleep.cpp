#include "sample/life/Sleep.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace {

constexpr int minute = 60;

constexpr std::string_view inBed = "HKCategoryValueSleepAnalysisInBed";
constexpr std::string_view awake = "HKCategoryValueSleepAnalysisAwake";
constexpr std::string_view core = "HKCategoryValueSleepAnalysisAsleepCore";
constexpr std::string_view deep = "HKCategoryValueSleepAnalysisAsleepDeep";
constexpr std::string_view rem = "HKCategoryValueSleepAnalysisAsleepREM";
constexpr std::string_view unspecified = "HKCategoryValueSleepAnalysisAsleepUnspecified";

void tell(const Day& day, const Source& source, std::string_view stage, int from, int to,
          RecordSink& sink) {
  const Stamp start = day.at(from);
  sink.add(Sample{.type = "SleepAnalysis",
                  .source = &source,
                  .unit = "",
                  .start = start,
                  .end = start.after(to - from),
                  .value = stage});
}

void tellStages(const Day& day, const Source& watch, Random random, RecordSink& sink) {
  struct Stage {
    std::string_view name;
    int fewestMinutes;
    int mostMinutes;
  };
  constexpr std::array<Stage, 6> cycle{{{core, 20, 50},
                                        {deep, 15, 40},
                                        {core, 15, 45},
                                        {rem, 12, 35},
                                        {awake, 1, 6},
                                        {core, 10, 30}}};
  int second = day.bed;
  for (std::size_t index = 0; second < day.nextWake; ++index) {
    const Stage& stage = cycle[index % cycle.size()];
    const int length = random.whole(stage.fewestMinutes * 2, stage.mostMinutes * 2) * minute / 2;
    const int end = std::min(second + length, day.nextWake);
    tell(day, watch, stage.name, second, end, sink);
    second = end;
  }
}

}  // namespace

void tellNight(const Day& day, RecordSink& sink) {
  Random random = day.random.fork("sleep");
  if (!random.chance(day.share())) return;

  const Source* watch = day.source(&Devices::watch);
  if (watch != nullptr) tellStages(day, *watch, random.fork("stages"), sink);

  const bool phoneNotices = day.person.phoneNoticesSleep;
  const Source* bedside = phoneNotices ? day.source(&Devices::phone) : watch;
  if (bedside == nullptr) return;
  const int lightsOut = day.bed - random.whole(5 * minute, 25 * minute);
  const int outOfBed = day.nextWake + random.whole(1 * minute, 12 * minute);
  tell(day, *bedside, inBed, lightsOut, outOfBed, sink);
  if (phoneNotices && (watch == nullptr || random.chance(0.15))) {
    const int asleep = day.bed + random.whole(0, 10 * minute);
    tell(day, *bedside, unspecified, asleep, day.nextWake - random.whole(0, 9 * minute), sink);
  }
}
