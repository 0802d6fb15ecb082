#include "sample/export/DocumentType.h"

constinit const std::string_view documentType = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE HealthData [
<!ELEMENT HealthData (ExportDate, Me, (Record | Workout | ActivitySummary)*)>
<!ATTLIST HealthData locale CDATA #REQUIRED>
<!ELEMENT ExportDate EMPTY>
<!ATTLIST ExportDate value CDATA #REQUIRED>
<!ELEMENT Me EMPTY>
<!ATTLIST Me
  HKCharacteristicTypeIdentifierDateOfBirth CDATA #REQUIRED
  HKCharacteristicTypeIdentifierBiologicalSex CDATA #REQUIRED
  HKCharacteristicTypeIdentifierBloodType CDATA #REQUIRED
  HKCharacteristicTypeIdentifierFitzpatrickSkinType CDATA #REQUIRED
>
<!ELEMENT Record (MetadataEntry*, HeartRateVariabilityMetadataList?)>
<!ATTLIST Record
  type CDATA #REQUIRED
  sourceName CDATA #REQUIRED
  sourceVersion CDATA #IMPLIED
  device CDATA #IMPLIED
  unit CDATA #IMPLIED
  creationDate CDATA #IMPLIED
  startDate CDATA #REQUIRED
  endDate CDATA #REQUIRED
  value CDATA #IMPLIED
>
<!ELEMENT MetadataEntry EMPTY>
<!ATTLIST MetadataEntry key CDATA #REQUIRED value CDATA #REQUIRED>
<!ELEMENT HeartRateVariabilityMetadataList (InstantaneousBeatsPerMinute*)>
<!ELEMENT InstantaneousBeatsPerMinute EMPTY>
<!ATTLIST InstantaneousBeatsPerMinute bpm CDATA #REQUIRED time CDATA #REQUIRED>
<!ELEMENT Workout (MetadataEntry*, WorkoutEvent*, WorkoutStatistics*)>
<!ATTLIST Workout
  workoutActivityType CDATA #REQUIRED
  duration CDATA #IMPLIED
  durationUnit CDATA #IMPLIED
  sourceName CDATA #REQUIRED
  sourceVersion CDATA #IMPLIED
  device CDATA #IMPLIED
  creationDate CDATA #IMPLIED
  startDate CDATA #REQUIRED
  endDate CDATA #REQUIRED
>
<!ELEMENT WorkoutEvent EMPTY>
<!ATTLIST WorkoutEvent
  type CDATA #REQUIRED
  date CDATA #REQUIRED
  duration CDATA #IMPLIED
  durationUnit CDATA #IMPLIED
>
<!ELEMENT WorkoutStatistics EMPTY>
<!ATTLIST WorkoutStatistics
  type CDATA #REQUIRED
  startDate CDATA #REQUIRED
  endDate CDATA #REQUIRED
  average CDATA #IMPLIED
  minimum CDATA #IMPLIED
  maximum CDATA #IMPLIED
  sum CDATA #IMPLIED
  unit CDATA #IMPLIED
>
<!ELEMENT ActivitySummary EMPTY>
<!ATTLIST ActivitySummary
  dateComponents CDATA #REQUIRED
  activeEnergyBurned CDATA #IMPLIED
  activeEnergyBurnedGoal CDATA #IMPLIED
  activeEnergyBurnedUnit CDATA #IMPLIED
  appleMoveTime CDATA #IMPLIED
  appleMoveTimeGoal CDATA #IMPLIED
  appleExerciseTime CDATA #IMPLIED
  appleExerciseTimeGoal CDATA #IMPLIED
  appleStandHours CDATA #IMPLIED
  appleStandHoursGoal CDATA #IMPLIED
>
]>
)xml";
