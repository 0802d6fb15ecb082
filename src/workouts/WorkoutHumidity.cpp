#include "workouts/WorkoutHumidity.h"
#include "platform/JsonFields.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

using JsonFields::Field;

namespace {

constexpr std::array<std::string_view, 5> knownEncodings{
    "healthkit_value", "healthkit_percent", "healthkit_fraction", "xml_percent", "legacy_percent"};

bool isHexDigit(char letter) {
  return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'f') ||
         (letter >= 'A' && letter <= 'F');
}

/// Whether `text` is a UUID: 8-4-4-4-12 hexadecimal digits of either case.
bool isUUID(std::string_view text) {
  constexpr std::string_view form = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
  return std::ranges::equal(text, form, [](char letter, char wanted) {
    return wanted == '-' ? letter == '-' : isHexDigit(letter);
  });
}

/// Whether this application is known to record humidity as a percentage. This is true of Apple's
/// own applications and of Apple Health on a device, which appends the device's identifier.
bool isTrusted(std::string_view bundle) {
  constexpr std::string_view devicePrefix = "com.apple.health.";
  return bundle == "com.apple.Workout" || bundle == "com.apple.health" ||
         (bundle.starts_with(devicePrefix) && isUUID(bundle.substr(devicePrefix.size())));
}

}  // namespace

std::string_view WorkoutHumidity::status() const {
  const bool known = std::ranges::find(knownEncodings, encoding) != knownEncodings.end();
  if (!known || raw_unit != "%") return "unrecognized_representation";
  if (!raw_value || !std::isfinite(*raw_value)) return "invalid_value";
  if (*raw_value < 0) return "out_of_range";
  if (encoding == "legacy_percent") return "legacy_unverified";
  if (encoding == "xml_percent") return "unverified_scale";
  if (!source_bundle_id || !isTrusted(*source_bundle_id)) return "unverified_scale";
  return *raw_value <= 100 ? "valid" : "out_of_range";
}

std::optional<WorkoutHumidity> humidityIn(const std::string& json) {
  try {
    return JsonFields::parsed(json).get<WorkoutHumidity>();
  } catch (const DecodingError&) {
    return std::nullopt;
  }
}

namespace {

constexpr std::tuple humidityFields{Field{"raw_value", &WorkoutHumidity::raw_value},
                                    Field{"raw_unit", &WorkoutHumidity::raw_unit},
                                    Field{"raw_text", &WorkoutHumidity::raw_text},
                                    Field{"encoding", &WorkoutHumidity::encoding},
                                    Field{"source_bundle_id", &WorkoutHumidity::source_bundle_id},
                                    Field{"source_version", &WorkoutHumidity::source_version}};

}  // namespace

void from_json(const nlohmann::json& json, WorkoutHumidity& humidity) {
  JsonFields::read(json, humidity, humidityFields);
}

void to_json(nlohmann::ordered_json& json, const WorkoutHumidity& humidity) {
  JsonFields::write(json, humidity, humidityFields);
}
