#pragma once
// Keeps what a reader tells, for tests to look at.

#include "import/Failure.h"
#include "import/export/ExportReader.h"
#include "import/export/ExportSink.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// An ExportedRecord that owns its texts.
struct KeptRecord {
  std::string type;
  std::string startDate;
  std::optional<std::string> startDay = {};
  std::optional<std::string> endDate = {};
  std::optional<std::string> creationDate = {};
  std::optional<std::string> sourceName = {};
  std::optional<std::string> device = {};
  std::optional<std::string> unit = {};
  std::optional<std::string> value = {};
  std::optional<double> number = {};
  bool converted = false;
  bool unknownUnit = false;

  bool operator==(const KeptRecord&) const = default;
};

class CollectingSink : public ExportSink {
public:
  void exportedAt(std::string_view stamp) override { exportDate = stamp; }

  void add(const ExportedRecord& record) override {
    const auto kept = [](std::optional<std::string_view> text) {
      return text ? std::optional<std::string>(*text) : std::nullopt;
    };
    records.push_back({.type = std::string(record.type),
                       .startDate = std::string(record.startDate),
                       .startDay = kept(record.startDay),
                       .endDate = kept(record.endDate),
                       .creationDate = kept(record.creationDate),
                       .sourceName = kept(record.sourceName),
                       .device = kept(record.device),
                       .unit = kept(record.unit),
                       .value = kept(record.value),
                       .number = record.number,
                       .converted = record.converted,
                       .unknownUnit = record.unknownUnit});
  }

  void add(const ExportedWorkout& workout) override { workouts.push_back(workout); }
  void add(const ExportedActivityDay& day) override { days.push_back(day); }
  void notStored(std::string_view element) override { ++others[std::string(element)]; }
  void skipped(std::string_view reason, long long line) override {
    skips.emplace_back(reason, line);
  }

  std::optional<std::string> exportDate;
  std::vector<KeptRecord> records;
  std::vector<ExportedWorkout> workouts;
  std::vector<ExportedActivityDay> days;
  std::map<std::string, int> others;
  std::vector<std::pair<std::string, long long>> skips;
};

/// Where the exports of these tests are made, in winter: its stamps are told as exported.
inline TimeZone berlin() { return TimeZone::named("Europe/Berlin").value(); }

/// Feeds `document` to a reader in pieces of `size` bytes and ends it.
inline void readInto(CollectingSink& sink, std::string_view document, std::size_t size = 1 << 16) {
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);
  for (std::size_t position = 0; position < document.size(); position += size) {
    reader.feed(document.substr(position, size));
  }
  reader.finish();
}

inline CollectingSink sinkOf(std::string_view document) {
  CollectingSink sink;
  readInto(sink, document);
  return sink;
}

/// What reading `document` fails with; "" when it does not.
inline std::string errorOf(std::string_view document, SummaryLang lang = SummaryLang::en) {
  CollectingSink sink;
  try {
    readInto(sink, document);
  } catch (const Failure& error) {
    return error.text(lang);
  }
  return "";
}

/// An export with `elements` in it, the first of them in line 3.
inline std::string exportOf(std::string_view elements) {
  std::string document =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HealthData locale=\"en_GB\">\n";
  return document.append(elements) += "\n</HealthData>\n";
}

/// The one record that `attributes` make, whatever else is in them.
inline KeptRecord recordOf(std::string_view attributes) {
  std::string element = "<Record ";
  const CollectingSink sink = sinkOf(exportOf(element.append(attributes) += "/>"));
  return sink.records.at(0);
}

/// The one workout made of `attributes` and `parts`.
inline ExportedWorkout workoutOf(std::string_view attributes, std::string_view parts) {
  std::string element =
      "<Workout workoutActivityType=\"HKWorkoutActivityTypeRunning\""
      " startDate=\"2024-03-01 08:00:00 +0100\" ";
  element.append(attributes).append(">").append(parts).append("</Workout>");
  return sinkOf(exportOf(element)).workouts.at(0);
}
