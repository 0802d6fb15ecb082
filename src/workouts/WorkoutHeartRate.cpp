#include "workouts/WorkoutHeartRate.h"
#include "platform/JsonFields.h"

using JsonFields::Field;

namespace {

constexpr std::tuple pointFields{Field{"record_id", &WorkoutHeartRatePoint::record_id},
                                 Field{"start", &WorkoutHeartRatePoint::start},
                                 Field{"end", &WorkoutHeartRatePoint::end},
                                 Field{"source", &WorkoutHeartRatePoint::source},
                                 Field{"device", &WorkoutHeartRatePoint::device},
                                 Field{"raw_unit", &WorkoutHeartRatePoint::raw_unit},
                                 Field{"stored_value", &WorkoutHeartRatePoint::stored_value},
                                 Field{"elapsed_seconds", &WorkoutHeartRatePoint::elapsed_seconds},
                                 Field{"bpm", &WorkoutHeartRatePoint::bpm},
                                 Field{"segment", &WorkoutHeartRatePoint::segment}};

constexpr std::tuple summaryFields{
    Field{"count", &WorkoutHeartRateSummary::count},
    Field{"min_bpm", &WorkoutHeartRateSummary::min_bpm},
    Field{"max_bpm", &WorkoutHeartRateSummary::max_bpm},
    Field{"sample_mean_bpm", &WorkoutHeartRateSummary::sample_mean_bpm}};

constexpr std::tuple paginationFields{
    Field{"total_count", &WorkoutHeartRatePagination::total_count},
    Field{"returned_count", &WorkoutHeartRatePagination::returned_count},
    Field{"limit", &WorkoutHeartRatePagination::limit},
    Field{"offset", &WorkoutHeartRatePagination::offset},
    Field{"has_more", &WorkoutHeartRatePagination::has_more},
    Field{"next_offset", &WorkoutHeartRatePagination::next_offset}};

constexpr std::tuple heartRateFields{
    Field{"person_id", &WorkoutHeartRate::person_id},
    Field{"workout", &WorkoutHeartRate::workout},
    Field{"source", &WorkoutHeartRate::source},
    Field{"available_sources", &WorkoutHeartRate::available_sources},
    Field{"summary", &WorkoutHeartRate::summary},
    Field{"samples", &WorkoutHeartRate::samples},
    Field{"pagination", &WorkoutHeartRate::pagination},
    Field{"excluded_candidate_count", &WorkoutHeartRate::excluded_candidate_count}};

}  // namespace

void from_json(const nlohmann::json& json, WorkoutHeartRatePoint& point) {
  JsonFields::read(json, point, pointFields);
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRatePoint& point) {
  JsonFields::write(json, point, pointFields);
}

void from_json(const nlohmann::json& json, WorkoutHeartRateSummary& summary) {
  JsonFields::read(json, summary, summaryFields);
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRateSummary& summary) {
  JsonFields::write(json, summary, summaryFields);
}

void from_json(const nlohmann::json& json, WorkoutHeartRatePagination& pagination) {
  JsonFields::read(json, pagination, paginationFields);
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRatePagination& pagination) {
  JsonFields::write(json, pagination, paginationFields);
}

void from_json(const nlohmann::json& json, WorkoutHeartRate& heartRate) {
  JsonFields::read(json, heartRate, heartRateFields);
}

void to_json(nlohmann::ordered_json& json, const WorkoutHeartRate& heartRate) {
  JsonFields::write(json, heartRate, heartRateFields);
}
