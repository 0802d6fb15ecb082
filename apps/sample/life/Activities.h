#pragma once
// The kinds of training, and the values that a watch records for each.

#include <optional>
#include <span>
#include <string_view>

/// One kind of training. 0 means that this kind does not have the figure.
struct Activity {
  std::string_view code;       ///< as stored: "TraditionalStrengthTraining"
  std::optional<bool> indoor;  ///< absent when not recorded
  double kilometresPerHour;
  double kilocaloriesPerMinute;
  double heartRate;     ///< after the warm-up
  double climbPerHour;  ///< metres
  double mets;
  bool basalEnergy;
  bool temperature;
  bool chestStrap;  ///< a chest strap is worn in addition to the watch
};

/// All kinds, in the order in which a person cycles through them.
std::span<const Activity> activities();
