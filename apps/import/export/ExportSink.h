#pragma once
// The elements of an export, in the form that the database stores.

#include "workouts/Workouts.h"

#include <optional>
#include <string>
#include <string_view>

/// One record. Texts are as exported, with three exceptions: the type has no prefix, stamps are in
/// the member's time zone, and a unit may be converted. Texts are valid only during the call. A
/// missing attribute is absent. A stamp with an unreadable time is as exported.
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
  std::optional<double> number;  ///< set when the whole value is a finite number; converted
  bool converted = false;        ///< unit and number were converted to the stored unit
  /// The type has one stored unit, and this record's unit, or missing unit, cannot be converted to
  /// it. Unit and number are as exported, so that the row itself says what its number means.
  bool unknownUnit = false;
};

/// One workout, in minutes, kilometres, kilocalories, metres and degrees Celsius, with its stamps
/// in the member's time zone.
struct ExportedWorkout {
  WorkoutEntry entry;  ///< an empty activity_type, end or source means absent (NULL)
  std::optional<std::string> creationDate;
  bool converted = false;  ///< a figure was converted to the stored unit
  /// A figure was omitted because its unit is missing or unknown: the workout's columns have no
  /// unit.
  bool unknownUnit = false;

  bool operator==(const ExportedWorkout&) const = default;
};

/// The rings of one day, with energies in kilocalories.
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
  bool converted = false;    ///< energies were converted to the stored unit
  bool unknownUnit = false;  ///< energies are in an unknown unit, as exported

  bool operator==(const ExportedActivityDay&) const = default;
};

/// Receives the elements from the reader, in the order of the file.
class ExportSink {
public:
  virtual ~ExportSink() = default;

  virtual void exportedAt(std::string_view stamp) = 0;  ///< the export's own date
  virtual void add(const ExportedRecord& record) = 0;
  virtual void add(const ExportedWorkout& workout) = 0;
  virtual void add(const ExportedActivityDay& day) = 0;

  /// An element without a table in the database ("WorkoutRoute", "ClinicalRecord", ...).
  virtual void notStored(std::string_view element) = 0;

  /// An element that cannot be stored. `reason` is the English text of one of
  /// import/export/SkipReasons.h ("no startDate"). `line` is the line of the element's start.
  virtual void skipped(std::string_view reason, long long line) = 0;
};
