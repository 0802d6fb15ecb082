#include "mcp/tools/WorkoutListJson.h"
#include "mcp/tools/JsonText.h"
#include "platform/JsonFields.h"
#include "summary/ActivityNames.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;
using JsonFields::orNull;
using WorkoutList::Query;
using WorkoutSelection::Selection;

Json filtersOf(const Query& query) {
  return {{"activity_type", query.filters.activityType},
          {"environment", rawValue(query.filters.environment)},
          {"source", query.filters.source}};
}

Json activityOf(const std::string& code, std::int64_t count, SummaryLang lang) {
  return {{"activity_type", code}, {"label", activityName(code, lang)}, {"count", count}};
}

Json availableActivitiesOf(const Selection& selection, SummaryLang lang) {
  Json activities = Json::array();
  for (const auto& [code, count] : selection.availableActivities) {
    activities.push_back(activityOf(code, count, lang));
  }
  return activities;
}

Json paginationOf(const Query& query, const Selection& selection) {
  return {{"total_count", selection.totalCount},
          {"returned_count", selection.page.size()},
          {"limit", query.page.limit},
          {"offset", query.page.offset},
          {"order", WorkoutList::rawValue(query.order)},
          {"has_more", selection.nextOffset.has_value()},
          {"next_offset", orNull(selection.nextOffset)}};
}

Json unitsOf() {
  Json units = Json::object();
  for (const WorkoutSelection::Measure& measure : WorkoutSelection::measures) {
    units[std::string(measure.key)] = measure.unit;
  }
  return units;
}

Json totalsOf(const Selection& selection, SummaryLang lang) {
  Json totals{{"count", selection.totalCount}};
  for (std::size_t index = 0; index < selection.totals.size(); ++index) {
    const WorkoutSelection::Total& total = selection.totals[index];
    const std::string key(WorkoutSelection::measures[index].key);
    totals[key] = total.count == 0 ? Json(nullptr) : Json(total.sum);
    totals[key + "_count"] = total.count;
  }
  totals["by_activity"] = Json::array();
  for (const auto& [code, count] : selection.byActivity) {
    totals["by_activity"].push_back(activityOf(code, count, lang));
  }
  return totals;
}

Json humidityOf(const WorkoutHumidity& reading) {
  return {{"raw_value", orNull(reading.raw_value)},
          {"raw_unit", orNull(reading.raw_unit)},
          {"raw_text", orNull(reading.raw_text)},
          {"encoding", reading.encoding},
          {"source_bundle_id", orNull(reading.source_bundle_id)},
          {"source_version", orNull(reading.source_version)}};
}

Json workoutOf(const WorkoutEntry& workout, SummaryLang lang) {
  Json json{{"activity_type", workout.activity_type},
            {"label", activityName(workout.activity_type, lang)},
            {"start", workout.start},
            {"end", workout.end},
            {"source", workout.source},
            {"workout_id", workout.workout_id()},
            {"indoor", orNull(workout.indoor)}};
  for (const WorkoutSelection::Measure& measure : WorkoutSelection::measures) {
    json[std::string(measure.key)] = orNull(measure.read(workout));
  }
  const std::optional<WorkoutHumidity> reading = workout.humidityReading();
  json["humidity_status"] = reading ? Json(reading->status()) : Json(nullptr);
  json["humidity"] = reading ? humidityOf(*reading) : Json(nullptr);
  return json;
}

}  // namespace

std::string WorkoutListJson::json(const Query& query, const Selection& selection,
                                  const std::string& coverage, const Tools::Call& call) {
  Json document{{"person_id", query.member.id},
                {"person", query.member.name},
                {"filters", filtersOf(query)},
                {"available_activities", availableActivitiesOf(selection, call.lang)},
                {"available_sources", selection.availableSources},
                {"pagination", paginationOf(query, selection)},
                {"units", unitsOf()},
                {"totals", totalsOf(selection, call.lang)},
                {"workouts", Json::array()},
                {"note", WorkoutList::closingNote.in(call.lang)},
                {"coverage", coverage},
                {"boundary", Tools::boundary.in(call.lang)}};
  for (const WorkoutEntry& workout : selection.page) {
    document["workouts"].push_back(workoutOf(workout, call.lang));
  }
  return Tools::documentText(document);
}
