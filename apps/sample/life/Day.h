#pragma once
// The plan of one person's day before any measurement: place, times, activity and devices.

#include "sample/life/Calendar.h"
#include "sample/life/Person.h"
#include "sample/life/Random.h"

#include <optional>
#include <string_view>

/// A training session on a day. Seconds count from the day's midnight.
struct Session {
  int from = 0;
  int to = 0;
  int number = 0;  ///< number of the person's session, from 0

  bool contains(int second) const { return second >= from && second < to; }
};

/// A day. Seconds count from its midnight and may go beyond its end, into the following night.
struct Day {
  const Person& person;
  CivilDay date;
  Zone zone;
  Stamp midnight;
  Random random;    ///< to be forked, once per subject
  double age;       ///< 0 on the first day of the history, 1 on the last; for slow changes
  double density;   ///< frequency of measurements; 1 is natural
  double activity;  ///< 1 on an average day
  int wake;         ///< time of getting up
  int bed;          ///< time of falling asleep, after `wake`
  int nextWake;     ///< end of that night
  bool watchWorn;
  bool phoneCarried;
  std::optional<Session> session;

  Stamp at(int second) const { return stampIn(zone, midnight.moment + second); }

  /// The person's device; null when there is none or it was not in use on this day.
  const Source* source(DeviceOf device) const;

  /// The fraction of the less frequent samples to keep. A denser history has more heart-rate
  /// samples, but nobody steps on the scale forty times a day.
  double share() const { return density < 1 ? density : 1; }
};

/// The history that a day belongs to.
struct HistoryContext {
  CivilDay first;
  CivilDay last;
  double density = 1;
  std::uint64_t seed = 0;
};

/// The plan of `date` for the person. It depends only on the arguments, not on earlier calls.
Day dayOf(const Person& person, const HistoryContext& context, CivilDay date, int sessionsBefore);
