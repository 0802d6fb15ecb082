#pragma once
// The kinds of training, and what of each a watch records.

#include <optional>
#include <span>
#include <string_view>

/// One kind. A figure of 0 is one that this kind of training does not have.
struct Activity {
  std::string_view code;       ///< as it is stored: "TraditionalStrengthTraining"
  std::optional<bool> indoor;  ///< absent when nobody said
  double kilometresPerHour;
  double kilocaloriesPerMinute;
  double heartRate;     ///< once warm
  double climbPerHour;  ///< metres
  double mets;
  bool basalEnergy;
  bool temperature;
  bool chestStrap;  ///< a chest strap is worn besides the watch
};

/// All kinds, in the order in which people who like variety go through them.
std::span<const Activity> activities();
