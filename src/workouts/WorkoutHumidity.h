#pragma once
// A humidity reading as recorded, and whether its scale is known.

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>

/// A raw reading. The database contains humidity in several conventions, so the number is
/// meaningless without the other fields. JSON keys are the field names.
struct WorkoutHumidity {
  std::optional<double> raw_value;              ///< the number as recorded
  std::optional<std::string> raw_unit;          ///< its unit as recorded
  std::optional<std::string> raw_text;          ///< the value as text, if it is no usable number
  std::string encoding;                         ///< the convention: "healthkit_percent", ...
  std::optional<std::string> source_bundle_id;  ///< the application that recorded the workout
  std::optional<std::string> source_version;    ///< that application's version

  /// The validity of the reading: "valid" (`raw_value` is a percentage, 0 to 100), "out_of_range",
  /// "invalid_value", "unrecognized_representation", "legacy_unverified" or "unverified_scale". The
  /// scale is never guessed from the size of the number.
  std::string_view status() const;

  bool operator==(const WorkoutHumidity&) const = default;
};

/// The reading in the text `json`; `nullopt` when it is not JSON or not a reading.
std::optional<WorkoutHumidity> humidityIn(const std::string& json);

/// Decoding throws DecodingError for a missing "encoding" or a value of another JSON type. Unknown
/// keys are ignored; null counts as absent. Encoding omits absent fields.
void from_json(const nlohmann::json& json, WorkoutHumidity& humidity);
void to_json(nlohmann::ordered_json& json, const WorkoutHumidity& humidity);
