#pragma once
// A household of four: one with a watch, one with only a phone, one new, one with a missing
// database.

#include "support/Household.h"
#include "support/TestDatabase.h"

/// At `testNow`: "Ann" (person=ann) wears a watch and has a complete history of two winters, with
/// workouts, sleep and a scale. "本" (person=ben) has an iPhone and two weeks of steps; his history
/// is still coming in. "Cleo" (person=cleo) has sent no data. The database of "Dot" (person=dot) is
/// missing.
class Family {
public:
  Family();

  const Household& household() const { return members; }

private:
  Household members;
  TestDatabase ann;
  TestDatabase ben;
  TestDatabase cleo;
};
