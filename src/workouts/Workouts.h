#pragma once
// A workout as recorded, and its identifier.

#include "workouts/WorkoutHumidity.h"

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// The hash in a workout's identifier.
using WorkoutDigest = std::array<unsigned char, 32>;

/// SHA-256 of the four texts, each preceded by its length in bytes, in decimal, and a colon. The
/// texts are hashed unchanged, because the receiver application computes the same hash.
WorkoutDigest workoutDigest(std::string_view activityType, std::string_view source,
                            std::string_view start, std::string_view end);

/// The hash in `workoutID`; `nullopt` when it is not an identifier.
std::optional<WorkoutDigest> workoutDigestOf(std::string_view workoutID);

/// One workout. Texts are exactly as stored; a source may contain no-break spaces. An absent field
/// was not recorded. JSON keys are the field names.
struct WorkoutEntry {
  std::string activity_type;  ///< code, "TraditionalStrengthTraining"
  std::string start;          ///< stamp with its own zone
  std::string end;            ///< stamp with its own zone
  std::string source;
  std::optional<double> duration_min;
  std::optional<double> distance_km;
  std::optional<double> active_energy_kcal;
  std::optional<double> basal_energy_kcal;
  std::optional<double> hr_avg;  ///< beats per minute, like the next two
  std::optional<double> hr_min;
  std::optional<double> hr_max;
  std::optional<double> elevation_m;
  std::optional<double> avg_mets;
  std::optional<bool> indoor;  ///< absent means not recorded, never outdoor
  std::optional<double> temp_c;
  std::optional<double> humidity_pct;       ///< the old column; its scale is unconfirmed
  std::optional<WorkoutHumidity> humidity;  ///< the raw reading, if one was stored

  /// "w_" and the workoutDigest in 64 lower-case hexadecimal digits.
  std::string workout_id() const;

  /// The stored reading; otherwise one made from the old column (convention "legacy_percent");
  /// otherwise absent.
  std::optional<WorkoutHumidity> humidityReading() const;

  /// Relative humidity, 0 to 100, only when the reading's status is "valid".
  std::optional<double> humidityPercent() const;

  bool operator==(const WorkoutEntry&) const = default;
};

/// Decoding throws DecodingError for a missing text or a value of another JSON type. Unknown keys
/// are ignored; null counts as absent. Encoding omits absent fields.
void from_json(const nlohmann::json& json, WorkoutEntry& workout);
void to_json(nlohmann::ordered_json& json, const WorkoutEntry& workout);

/// A filter of workouts by their indoor flag.
enum class WorkoutEnvironment { all, indoor, outdoor, unspecified };

/// The environment with that name, case-sensitive: "all", "indoor", "outdoor", "unspecified".
/// `nullopt` for any other text.
std::optional<WorkoutEnvironment> workoutEnvironmentNamed(std::string_view rawValue);

/// The environment's name.
std::string_view rawValue(WorkoutEnvironment environment);

/// Whether a workout with this `indoor` flag belongs to `environment`. A workout without the flag
/// belongs only to `unspecified` and `all`.
bool includes(WorkoutEnvironment environment, std::optional<bool> indoor);
