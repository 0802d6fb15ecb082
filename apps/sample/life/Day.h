#pragma once
// One day of one person before anything is measured: where, how long, how lively, with what
// devices.

#include "sample/life/Calendar.h"
#include "sample/life/Person.h"
#include "sample/life/Random.h"

#include <optional>
#include <string_view>

/// A stretch of training on a day. Seconds count from the day's midnight.
struct Session {
  int from = 0;
  int to = 0;
  int number = 0;  ///< counts the person's sessions from 0

  bool contains(int second) const { return second >= from && second < to; }
};

/// A day. Seconds count from its midnight and may go beyond its end, into the following night.
struct Day {
  const Person& person;
  CivilDay date;
  Zone zone;
  Stamp midnight;
  Random random;    ///< to be forked, one subject each
  double age;       ///< 0 on the first day of the history, 1 on the last: for what changes slowly
  double density;   ///< how often things are measured; 1 is natural
  double activity;  ///< 1 on an average day
  int wake;         ///< when the person gets up
  int bed;          ///< when the person falls asleep, after `wake`
  int nextWake;     ///< when that night ends
  bool watchWorn;
  bool phoneCarried;
  std::optional<Session> session;

  Stamp at(int second) const { return stampIn(zone, midnight.moment + second); }

  /// The person's device, if there is one and it was in use on this day.
  const Source* source(DeviceOf device) const;

  /// What part of the rarer samples is kept. A denser history measures the heart more often, but
  /// nobody steps on the scale forty times a day.
  double share() const { return density < 1 ? density : 1; }
};

/// What history a day is part of.
struct HistoryContext {
  CivilDay first;
  CivilDay last;
  double density = 1;
  std::uint64_t seed = 0;
};

/// How the person spends `date`. The same for the same arguments, whichever days were asked before.
Day dayOf(const Person& person, const HistoryContext& context, CivilDay date, int sessionsBefore);
