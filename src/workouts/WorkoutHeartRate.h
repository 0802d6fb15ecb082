#pragma once
// The heart-rate samples of one workout: one page of them and a summary of all.

#include "workouts/Workouts.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// One sample. Texts are exactly as stored. JSON keys are the field names.
struct WorkoutHeartRatePoint {
  std::int64_t record_id = 0;  ///< row id of the sample in its table
  std::string start;           ///< stamp with its own zone
  std::optional<std::string> end;
  std::string source;
  std::optional<std::string> device;
  std::string raw_unit;                     ///< "count/min" or "bpm"
  std::optional<std::string> stored_value;  ///< the value as text
  double elapsed_seconds = 0;               ///< from the workout's start to the sample's start
  double bpm = 0;                           ///< as stored, not rounded
  std::int64_t segment = 0;                 ///< one higher after each gap of over 60 seconds

  bool operator==(const WorkoutHeartRatePoint&) const = default;
};

/// A summary of all matching samples, not only of the page. The values are absent without samples.
struct WorkoutHeartRateSummary {
  std::int64_t count = 0;
  std::optional<double> min_bpm;
  std::optional<double> max_bpm;
  std::optional<double> sample_mean_bpm;  ///< mean over samples, not weighted by time

  bool operator==(const WorkoutHeartRateSummary&) const = default;
};

struct WorkoutHeartRatePagination {
  std::int64_t total_count = 0;
  std::int64_t returned_count = 0;
  std::int64_t limit = 0;
  std::int64_t offset = 0;
  bool has_more = false;
  std::optional<std::int64_t> next_offset;  ///< absent on the last page

  bool operator==(const WorkoutHeartRatePagination&) const = default;
};

/// The samples of exactly one source with a start inside the workout: from the workout's start,
/// included, to its end, excluded.
struct WorkoutHeartRate {
  std::string person_id;  ///< set by the caller, who knows the person
  WorkoutEntry workout;
  std::string source;                          ///< the selected source
  std::vector<std::string> available_sources;  ///< those with a sample in the workout, ascending
  WorkoutHeartRateSummary summary;
  std::vector<WorkoutHeartRatePoint> samples;  ///< the page, ordered by time
  WorkoutHeartRatePagination pagination;
  /// Count of the selected source's samples with an unreadable time, unit or value.
  std::int64_t excluded_candidate_count = 0;

  bool operator==(const WorkoutHeartRate&) const = default;
};

/// Decoding and encoding follow the rules of workouts/Workouts.h.
void from_json(const nlohmann::json& json, WorkoutHeartRatePoint& point);
void from_json(const nlohmann::json& json, WorkoutHeartRateSummary& summary);
void from_json(const nlohmann::json& json, WorkoutHeartRatePagination& pagination);
void from_json(const nlohmann::json& json, WorkoutHeartRate& heartRate);
void to_json(nlohmann::ordered_json& json, const WorkoutHeartRatePoint& point);
void to_json(nlohmann::ordered_json& json, const WorkoutHeartRateSummary& summary);
void to_json(nlohmann::ordered_json& json, const WorkoutHeartRatePagination& pagination);
void to_json(nlohmann::ordered_json& json, const WorkoutHeartRate& heartRate);
