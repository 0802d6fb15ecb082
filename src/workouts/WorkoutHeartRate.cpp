#include "workouts/WorkoutHeartRate.h"
#include "platform/JsonFields.h"

using JsonFields::optional;
using JsonFields::required;
using JsonFields::setIfPresent;

void from_json(const nlohmann::json& json, WorkoutHeartRatePoint& point) {
  point.record_id = required<std::int64_t>(json, "record_id");
  point.start = required<std::string>(json, "start");
  point.end = optional<std::string>(json, "end");
  point.source = required<std::string>(json, "source");
  point.device = optional<std::string>(json, "device");
  point.raw_unit = required<std::string>(json, "raw_unit");
  point.stored_value = optional<std::string>(json, "stored_value");
  point.elapsed_seconds = required<double>(json, "elapsed_seconds");
  point.bpm = required<double>(json, "bpm");
  point.segment = required<std::int64_t>(json, "segment");
}

void from_json(const nlohmann::json& json, WorkoutHeartRateSummary& summary) {
  summary.count = required<std::int64_t>(json, "count");
  summary.min_bpm = optional<double>(json, "min_bpm");
  summary.max_bpm = optional<double>(json, "max_bpm");
  summary.sample_mean_bpm = optional<double>(json, "sample_mean_bpm");
}

void from_json(const nlohmann::json& json, WorkoutHeartRatePagination& pagination) {
  pagination.total_count = required<std::int64_t>(json, "total_count");
  pagination.returned_count = required<std::int64_t>(json, "returned_count");
  pagination.limit = required<std::int64_t>(json, "limit");
  pagination.offset = required<std::int64_t>(json, "offset");
  pagination.has_more = required<bool>(json, "has_more");
  pagination.next_offset = optional<std::int64_t>(json, "next_offset");
}

void from_json(const nlohmann::json& json, WorkoutHeartRate& heartRate) {
  heartRate.person_id = required<std::string>(json, "person_id");
  heartRate.workout = required<WorkoutEntry>(json, "workout");
  heartRate.source = required<std::string>(json, "source");
  heartRate.available_sources = required<std::vector<std::string>>(json, "available_sources");
  heartRate.summary = required<WorkoutHeartRateSummary>(json, "summary");
  heartRate.samples = required<std::vector<WorkoutHeartRatePoint>>(json, "samples");
  heartRate.pagination = required<WorkoutHeartRatePagination>(json, "pagination");
  heartRate.excluded_candidate_count = required<std::int64_t>(json, "excluded_candidate_count");
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRatePoint& point) {
  json = nlohmann::ordered_json::object();
  json["record_id"] = point.record_id;
  json["start"] = point.start;
  setIfPresent(json, "end", point.end);
  json["source"] = point.source;
  setIfPresent(json, "device", point.device);
  json["raw_unit"] = point.raw_unit;
  setIfPresent(json, "stored_value", point.stored_value);
  json["elapsed_seconds"] = point.elapsed_seconds;
  json["bpm"] = point.bpm;
  json["segment"] = point.segment;
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRateSummary& summary) {
  json = nlohmann::ordered_json::object();
  json["count"] = summary.count;
  setIfPresent(json, "min_bpm", summary.min_bpm);
  setIfPresent(json, "max_bpm", summary.max_bpm);
  setIfPresent(json, "sample_mean_bpm", summary.sample_mean_bpm);
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRatePagination& pagination) {
  json = nlohmann::ordered_json::object();
  json["total_count"] = pagination.total_count;
  json["returned_count"] = pagination.returned_count;
  json["limit"] = pagination.limit;
  json["offset"] = pagination.offset;
  json["has_more"] = pagination.has_more;
  setIfPresent(json, "next_offset", pagination.next_offset);
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRate& heartRate) {
  json = nlohmann::ordered_json::object();
  json["person_id"] = heartRate.person_id;
  json["workout"] = heartRate.workout;
  json["source"] = heartRate.source;
  json["available_sources"] = heartRate.available_sources;
  json["summary"] = heartRate.summary;
  json["samples"] = heartRate.samples;
  json["pagination"] = heartRate.pagination;
  json["excluded_candidate_count"] = heartRate.excluded_candidate_count;
}
