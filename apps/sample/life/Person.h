#pragma once
// Who lives in the household, and what they wear and carry.

#include "sample/life/Calendar.h"
#include "sample/life/Sample.h"

#include <optional>
#include <string>
#include <vector>

/// What a person owns that records something. A person without one of them has no samples from it.
struct Devices {
  std::optional<Source> watch;
  std::optional<Source> phone;
  std::optional<Source> chestStrap;
  std::optional<Source> scale;
  std::optional<Source> oldScale;  ///< its importer left the calendar days out
  std::optional<Source> mealDiary;
  std::optional<Source> kitchenScale;  ///< counts in kilojoules
  std::optional<Source> runningApp;    ///< for those who train without a watch
  std::optional<Source> byHand;        ///< typed into Apple Health, once with a wrong date
};

/// Names one of a person's devices.
using DeviceOf = std::optional<Source> Devices::*;

struct Person {
  enum class Kind {
    watchAndPhone,  ///< years of everything
    phoneAlone,     ///< about a year of what a phone in a pocket notices
    justPaired,     ///< nothing has arrived yet
  };

  std::string id;
  std::string name;
  Kind kind = Kind::justPaired;
  Devices devices = {};
  Zone home = Zone::shanghai;
  std::optional<Zone> journeys =
      std::nullopt;               ///< where the person spends two weeks of every autumn
  int usualBedtime = 0;           ///< seconds after the midnight before; may be beyond the next one
  bool phoneNoticesSleep = true;  ///< false for who leaves the nights to the watch alone
};

constexpr int largestHousehold = 12;

/// The first `count` members of the household: Ann with watch and phone, Ben with a phone, 小美 who
/// was paired a moment ago, then others of the first two kinds by turns. Names and identifiers are
/// all different. `count` is at most `largestHousehold`.
std::vector<Person> household(int count);
