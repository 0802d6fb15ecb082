#pragma once
// A person's life as a stream of records, day after day.

#include "sample/life/Day.h"
#include "sample/life/Person.h"
#include "sample/life/Sample.h"

#include <cstdint>
#include <optional>

/// Which life to tell.
struct HistoryOptions {
  CivilDay today;  ///< the history ends on its morning, with the last sync
  int years = 3;   ///< of a person with a watch; a phone alone has about one year
  std::uint64_t seed = 1;
  std::optional<std::int64_t> records;  ///< wanted, about; natural when absent
};

/// The first day of the person's history.
CivilDay firstDay(const Person& person, const HistoryOptions& options);

/// The household's last sync: seven o'clock in the morning of `today` in Shanghai, which is past on
/// most machines whose clock says `today`. Nothing later is told, but for the one weight that
/// some people typed in with a wrong date.
Stamp lastSync(CivilDay today);

/// A life that is told a day at a time, for who cannot take all of it at once.
class History {
public:
  /// `person` outlives the history.
  History(const Person& person, const HistoryOptions& options);

  /// Tells `sink` the next day, oldest first; false after the last.
  bool tellNextDay(RecordSink& sink);

private:
  const Person& person;
  HistoryContext context;
  Stamp sync;
  CivilDay date;  ///< the next to tell
  int sessions = 0;
  bool ended;
};

/// Tells `sink` everything, oldest day first. The same options tells the same.
void tellHistory(const Person& person, const HistoryOptions& options, RecordSink& sink);
