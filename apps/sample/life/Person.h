#pragma once
// The members of the household and their devices.

#include "sample/life/Calendar.h"
#include "sample/life/Sample.h"

#include <optional>
#include <string>
#include <vector>

/// A person's recording devices. A missing device records no samples.
struct Devices {
  std::optional<Source> watch;
  std::optional<Source> phone;
  std::optional<Source> chestStrap;
  std::optional<Source> scale;
  std::optional<Source> oldScale;  ///< its importer omitted the calendar days
  std::optional<Source> mealDiary;
  std::optional<Source> kitchenScale;  ///< measures in kilojoules
  std::optional<Source> runningApp;    ///< for people who train without a watch
  std::optional<Source> byHand;        ///< entered in Apple Health, once with a wrong date
};

/// Selects one of a person's devices.
using DeviceOf = std::optional<Source> Devices::*;

struct Person {
  enum class Kind {
    watchAndPhone,  ///< years of all kinds of data
    phoneAlone,     ///< about a year of data from a phone in a pocket
    justPaired,     ///< no data yet
  };

  std::string id;
  std::string name;
  Kind kind = Kind::justPaired;
  Devices devices = {};
  Zone home = Zone::shanghai;
  std::optional<Zone> journeys = std::nullopt;  ///< zone of a two-week journey every autumn
  int usualBedtime = 0;           ///< seconds after the day's midnight; may be past the next
  bool phoneNoticesSleep = true;  ///< false when only the watch records sleep
};

constexpr int largestHousehold = 12;

/// The first `count` members of the household: Ann with watch and phone, Ben with a phone, 小美
/// just paired, then the first two kinds in turn. All names and ids are different. `count` is at
/// most `largestHousehold`.
std::vector<Person> household(int count);
