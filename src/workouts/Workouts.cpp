#include "workouts/Workouts.h"
#include "platform/JsonFields.h"

#include <sodium.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

using JsonFields::Field;

WorkoutDigest workoutDigest(std::string_view activityType, std::string_view source,
                            std::string_view start, std::string_view end) {
  static const bool ready = sodium_init() >= 0;
  if (!ready) throw std::runtime_error("libsodium does not start");
  crypto_hash_sha256_state state;
  crypto_hash_sha256_init(&state);
  const auto add = [&state](std::string_view bytes) {
    const auto* first = reinterpret_cast<const unsigned char*>(bytes.data());
    crypto_hash_sha256_update(&state, first, bytes.size());
  };
  for (const std::string_view text : {activityType, source, start, end}) {
    add(std::to_string(text.size()) + ":");
    add(text);
  }
  WorkoutDigest digest{};
  static_assert(digest.size() == crypto_hash_sha256_BYTES);
  crypto_hash_sha256_final(&state, digest.data());
  return digest;
}

namespace {

constexpr std::string_view identifierPrefix = "w_";
constexpr std::string_view hexDigits = "0123456789abcdef";

}  // namespace

std::optional<WorkoutDigest> workoutDigestOf(std::string_view workoutID) {
  WorkoutDigest digest{};
  if (workoutID.size() != identifierPrefix.size() + 2 * digest.size()) return std::nullopt;
  if (!workoutID.starts_with(identifierPrefix)) return std::nullopt;
  workoutID.remove_prefix(identifierPrefix.size());
  for (std::size_t index = 0; index < digest.size(); ++index) {
    const std::size_t high = hexDigits.find(workoutID[2 * index]);
    const std::size_t low = hexDigits.find(workoutID[2 * index + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
    digest[index] = static_cast<unsigned char>(high * 16 + low);
  }
  return digest;
}

std::string WorkoutEntry::workout_id() const {
  std::string identifier(identifierPrefix);
  for (const unsigned char byte : workoutDigest(activity_type, source, start, end)) {
    identifier += hexDigits[byte / 16];
    identifier += hexDigits[byte % 16];
  }
  return identifier;
}

namespace {

/// A non-finite number as text. A reading stores it as text instead of a number.
std::string notFiniteText(double number) {
  if (std::isnan(number)) return "nan";
  return number < 0 ? "-inf" : "inf";
}

}  // namespace

std::optional<WorkoutHumidity> WorkoutEntry::humidityReading() const {
  if (humidity || !humidity_pct) return humidity;
  WorkoutHumidity legacy;
  legacy.encoding = "legacy_percent";
  legacy.raw_unit = "%";
  if (std::isfinite(*humidity_pct)) {
    legacy.raw_value = humidity_pct;
  } else {
    legacy.raw_text = notFiniteText(*humidity_pct);
  }
  return legacy;
}

std::optional<double> WorkoutEntry::humidityPercent() const {
  const std::optional<WorkoutHumidity> reading = humidityReading();
  if (!reading || reading->status() != "valid") return std::nullopt;
  return reading->raw_value;
}

namespace {

constexpr std::tuple workoutFields{Field{"activity_type", &WorkoutEntry::activity_type},
                                   Field{"start", &WorkoutEntry::start},
                                   Field{"end", &WorkoutEntry::end},
                                   Field{"source", &WorkoutEntry::source},
                                   Field{"duration_min", &WorkoutEntry::duration_min},
                                   Field{"distance_km", &WorkoutEntry::distance_km},
                                   Field{"active_energy_kcal", &WorkoutEntry::active_energy_kcal},
                                   Field{"basal_energy_kcal", &WorkoutEntry::basal_energy_kcal},
                                   Field{"hr_avg", &WorkoutEntry::hr_avg},
                                   Field{"hr_min", &WorkoutEntry::hr_min},
                                   Field{"hr_max", &WorkoutEntry::hr_max},
                                   Field{"elevation_m", &WorkoutEntry::elevation_m},
                                   Field{"avg_mets", &WorkoutEntry::avg_mets},
                                   Field{"indoor", &WorkoutEntry::indoor},
                                   Field{"temp_c", &WorkoutEntry::temp_c},
                                   Field{"humidity_pct", &WorkoutEntry::humidity_pct},
                                   Field{"humidity", &WorkoutEntry::humidity}};

}  // namespace

void from_json(const nlohmann::json& json, WorkoutEntry& workout) {
  JsonFields::read(json, workout, workoutFields);
}

void to_json(nlohmann::ordered_json& json, const WorkoutEntry& workout) {
  JsonFields::write(json, workout, workoutFields);
}

namespace {

constexpr std::array<std::string_view, 4> environmentNames{
    "all", "indoor", "outdoor", "unspecified"};

}  // namespace

std::optional<WorkoutEnvironment> workoutEnvironmentNamed(std::string_view rawValue) {
  const auto name = std::ranges::find(environmentNames, rawValue);
  if (name == environmentNames.end()) return std::nullopt;
  return static_cast<WorkoutEnvironment>(name - environmentNames.begin());
}

std::string_view rawValue(WorkoutEnvironment environment) {
  return environmentNames[static_cast<std::size_t>(environment)];
}

bool includes(WorkoutEnvironment environment, std::optional<bool> indoor) {
  switch (environment) {
    case WorkoutEnvironment::all:
      return true;
    case WorkoutEnvironment::indoor:
      return indoor == true;
    case WorkoutEnvironment::outdoor:
      return indoor == false;
    case WorkoutEnvironment::unspecified:
      return !indoor;
  }
  return false;
}
