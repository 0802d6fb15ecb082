#include "sample/life/Activities.h"

#include <array>

namespace {

constexpr std::optional<bool> indoor = true;
constexpr std::optional<bool> outdoor = false;
constexpr std::optional<bool> unrecorded = std::nullopt;

// The number of kinds and the number of humidity forms have no common divisor, so every pair occurs
// eventually.
constexpr std::array<Activity, 13> table{{
    {"Running", outdoor, 9.6, 10.5, 156, 60, 9.8, true, true, true},
    {"TraditionalStrengthTraining", indoor, 0, 5.5, 118, 0, 5, true, false, false},
    {"Walking", outdoor, 5.1, 4.2, 104, 30, 3.6, true, true, false},
    {"Yoga", indoor, 0, 2.6, 92, 0, 2.5, false, false, false},
    {"Cycling", outdoor, 19, 8, 138, 140, 7.5, true, true, false},
    {"HighIntensityIntervalTraining", indoor, 0, 11, 161, 0, 8.5, true, false, true},
    {"Pickleball", unrecorded, 2.4, 6.5, 127, 0, 0, true, false, false},
    {"Hiking", outdoor, 4, 6.4, 121, 320, 6, true, true, false},
    {"Swimming", indoor, 2.1, 8.2, 0, 0, 0, true, false, false},
    {"Elliptical", indoor, 0, 8.6, 141, 0, 6.8, true, false, false},
    {"Barre", indoor, 0, 4.1, 111, 0, 3.1, true, false, false},
    {"Rowing", unrecorded, 7.5, 9, 146, 0, 7, true, false, true},
    {"Other", unrecorded, 0, 0, 0, 0, 0, false, false, false},
}};

}  // namespace

std::span<const Activity> activities() { return table; }
