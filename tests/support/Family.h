#pragma once
// A household of four, one of each kind: with a watch, with a phone alone, new, and out of reach.

#include "support/Household.h"
#include "support/TestDatabase.h"

/// At `testNow`: "Ann" (person=ann) wears a watch and has a complete history of two winters, with
/// workouts, sleep and a scale; "本" (person=ben) has an iPhone and two weeks of steps, his history
/// still filling in; "Cleo" (person=cleo) has not sent anything; the file of "Dot" (person=dot) is
/// not there.
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
