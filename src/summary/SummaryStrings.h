#pragma once
// All words of a summary, in both languages.

#include "platform/SummaryLang.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Words in one language. They have no default and are never empty, so a missing translation does
/// not compile.
class Words {
public:
  consteval Words(const char* text)  // NOLINT(google-explicit-constructor): a table of texts
      : text(*text == 0 ? throw "words are missing" : text) {}

  /// For a unit that is not written in this language.
  static consteval Words unwritten() { return {}; }

  constexpr operator std::string_view() const {
    return text;
  }  // NOLINT(google-explicit-constructor)

private:
  consteval Words() = default;

  std::string_view text;
};

/// A sentence with a place for each argument.
struct OpeningTemplate {
  Words pattern;
  std::string operator()(std::string_view name) const;
};
struct WeekdayTemplate {
  Words pattern;
  std::string operator()(std::string_view most, std::string_view least) const;
};
struct RestingHRTemplate {
  Words lowerPattern;
  Words higherPattern;
  /// `delta` in beats per minute; its sign is ignored.
  std::string operator()(double delta, bool lower) const;
};
struct BestMonthTemplate {
  Words pattern;
  std::string operator()(std::string_view month) const;
};

/// The words of one language. Units include their leading blank.
struct SummaryStrings {
  Words cardOverview, cardActivity, cardHeart, cardSleep, cardWorkouts, cardBody;
  Words records, span, typeCount, devices;
  Words steps30, steps90, stepsLastYear;
  Words restingHR90, restingHRLastYear, restingHRDelta;
  Words sleepDuration, bedtime, wakeTime;
  Words workoutCount, workoutMinutes, workoutTypes;
  Words weight, bmi;
  Words unitRecords, unitSteps, unitBPM, unitHours, unitTimes, unitMinutes, unitKg;
  Words needsWatch, notCollected, maybeUnauthorized, backfilling, noSamePeriod;
  Words noWorkouts, noBody;
  OpeningTemplate opening;
  Words coverageTitle, dataTitle, insightTitle;
  Words covRange, covLastSync, covCollected, covAbsent, covSuspicious, covNone;
  Words covBackfilling, covWarning, covComplete, covCompleteSuffix, covCompleteAll;
  Words covReached, covYearly, covStale;
  Words signature;
  WeekdayTemplate insightWeekday;
  RestingHRTemplate insightRestingHR;
  BestMonthTemplate insightBestMonth;

  static const SummaryStrings zh;
  static const SummaryStrings en;

  static const SummaryStrings& in(SummaryLang lang) { return lang == SummaryLang::zh ? zh : en; }
};
