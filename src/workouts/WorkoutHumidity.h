#pragma once
// A humidity reading as it was recorded, and whether its scale is known.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>

/// A raw reading. Humidity reached the database in several conventions, so the number means
/// something only together with the rest. JSON keys are the field names.
struct WorkoutHumidity {
  std::optional<double> raw_value;              ///< the number as recorded
  std::optional<std::string> raw_unit;          ///< its unit as recorded
  std::optional<std::string> raw_text;          ///< the value as text, when it is no usable number
  std::string encoding;                         ///< the convention: "healthkit_percent", ...
  std::optional<std::string> source_bundle_id;  ///< the application that recorded the workout
  std::optional<std::string> source_version;    ///< that application's version

  /// What the reading is worth: "valid" (`raw_value` is a percentage, 0 to 100), "out_of_range",
  /// "invalid_value", "unrecognized_representation", "legacy_unverified" or "unverified_scale". The
  /// scale is never guessed from the size of the number.
  std::string_view status() const;

  bool operator==(const WorkoutHumidity&) const = default;
};

/// The reading that `json` holds; `nullopt` when it is not JSON or no reading.
std::optional<WorkoutHumidity> humidityIn(const std::string& json);

/// Decoding throws DecodingError for a missing "encoding" or a value of another JSON type; unknown
/// keys are ignored and a null counts as absent. Encoding leaves absent fields out.
void from_json(const nlohmann::json& json, WorkoutHumidity& humidity);
void to_json(nlohmann::ordered_json& json, const WorkoutHumidity& humidity);
