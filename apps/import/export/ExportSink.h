#pragma once
// What an export holds, element by element, in the form that the database keeps.

#include "workouts/Workouts.h"

#include <optional>
#include <string>
#include <string_view>

/// One record. Every text is as exported but for the cut-off prefix of the type, the stamps, which
/// are in the member's time zone, and a converted unit; it is valid during the call alone. An
/// attribute that the export leaves out is absent. A stamp whose time cannot be read is as
/// exported.
struct ExportedRecord {
  std::string_view type;                     ///< "StepCount", never empty
  std::string_view startDate;                ///< stamp, "2024-03-01 08:00:00 +0800", never empty
  std::optional<std::string_view> startDay;  ///< first ten characters of `startDate`
  std::optional<std::string_view> endDate;
  std::optional<std::string_view> creationDate;
  std::optional<std::string_view> sourceName;
  std::optional<std::string_view> device;
  std::optional<std::string_view> unit;                         ///< of `number`
  std::optional<std::string_view> exportedUnit = std::nullopt;  ///< as exported
  std::optional<std::string_view> value;
  std::optional<double> number;  ///< when the whole value is a finite number; converted
  bool converted = false;        ///< unit and number were converted to the unit we store
  /// The type is stored in one unit and this one, or none, cannot be converted to it: unit and
  /// number are as exported, so that the row itself tells what its number means.
  bool unknownUnit = false;
};

/// One workout, in minutes, kilometres, kilocalories, metres and degrees Celsius, its stamps in the
/// member's time zone.
struct ExportedWorkout {
  WorkoutEntry entry;  ///< an empty end or source is absent (NULL); an empty activity_type too
  std::optional<std::string> creationDate;
  bool converted = false;  ///< a figure was converted to the unit we store
  /// A figure is left out because its unit is missing or unknown: the workout's columns do not say
  /// which unit they are in.
  bool unknownUnit = false;

  bool operator==(const ExportedWorkout&) const = default;
};

/// The rings of one day, energies in kilocalories.
struct ExportedActivityDay {
  std::string date;  ///< "2024-03-01"
  std::optional<double> activeEnergy;
  std::optional<double> activeEnergyGoal;
  std::optional<std::string> activeEnergyUnit;
  std::optional<double> moveTime;
  std::optional<double> moveTimeGoal;
  std::optional<double> exerciseTime;
  std::optional<double> exerciseTimeGoal;
  std::optional<double> standHours;
  std::optional<double> standHoursGoal;
  bool converted = false;    ///< energies were converted to the unit we store
  bool unknownUnit = false;  ///< energies are in a unit that we cannot convert, as exported

  bool operator==(const ExportedActivityDay&) const = default;
};

/// Takes what the reader finds, in the order of the file.
class ExportSink {
public:
  virtual ~ExportSink() = default;

  virtual void exportedAt(std::string_view stamp) = 0;  ///< the export's own date
  virtual void add(const ExportedRecord& record) = 0;
  virtual void add(const ExportedWorkout& workout) = 0;
  virtual void add(const ExportedActivityDay& day) = 0;

  /// An element that the database has no place for ("WorkoutRoute", "ClinicalRecord", ...).
  virtual void notStored(std::string_view element) = 0;

  /// An element that cannot be stored; `reason` names what is wrong with it ("no startDate") and is
  /// one of import/export/SkipReasons.h, in English. The line is the one where the element begins.
  virtual void skipped(std::string_view reason, long long line) = 0;
};
