#pragma once
// A person's life as a stream of records, day by day.

#include "sample/life/Day.h"
#include "sample/life/Person.h"
#include "sample/life/Sample.h"

#include <cstdint>
#include <optional>

/// The parameters of a generated life.
struct HistoryOptions {
  CivilDay today;  ///< the history ends on its morning, with the last sync
  int years = 3;   ///< for a person with a watch; without a watch there is about one year
  std::uint64_t seed = 1;
  std::optional<std::int64_t> records;  ///< approximate count; absent: natural
};

/// The first day of the person's history.
CivilDay firstDay(const Person& person, const HistoryOptions& options);

/// The household's last sync: 7:00 on `today` in Shanghai. On most machines whose date is `today`,
/// this moment has passed. No record is later, except the one weight that some people entered with
/// a wrong date.
Stamp lastSync(CivilDay today);

/// A life that is generated day by day, for consumers that cannot process all of it at once.
class History {
public:
  /// `person` must outlive this object.
  History(const Person& person, const HistoryOptions& options);

  /// Passes the next day to `sink`, oldest first; false after the last.
  bool tellNextDay(RecordSink& sink);

private:
  const Person& person;
  HistoryContext context;
  Stamp sync;
  CivilDay date;  ///< the next day to generate
  int sessions = 0;
  bool ended;
};

/// Passes the whole life to `sink`, oldest day first. The same options give the same life.
void tellHistory(const Person& person, const HistoryOptions& options, RecordSink& sink);
