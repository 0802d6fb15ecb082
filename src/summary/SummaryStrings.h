#pragma once
// Every word of a summary, once in each language.

#include "platform/SummaryLang.h"

#include <cstdint>
#include <string>
#include <string_view>

/// The product's web address, which ends the signature.
inline constexpr std::string_view webAddress = "larkspur.example";

/// A sentence with a place for each argument.
struct OpeningTemplate {
  std::string_view pattern;
  std::string operator()(std::string_view name) const;
};
struct WeekdayTemplate {
  std::string_view pattern;
  std::string operator()(std::string_view most, std::string_view least) const;
};
struct RestingHRTemplate {
  std::string_view lowerPattern;
  std::string_view higherPattern;
  /// `delta` in beats a minute, its sign ignored.
  std::string operator()(double delta, bool lower) const;
};
struct BestMonthTemplate {
  std::string_view pattern;
  std::string operator()(std::string_view month) const;
};

/// The words of one language. Units carry their leading blank; "" is a unit that is not written.
struct SummaryStrings {
  std::string_view cardOverview, cardActivity, cardHeart, cardSleep, cardWorkouts, cardBody;
  std::string_view records, span, typeCount, devices;
  std::string_view steps30, steps90, stepsLastYear;
  std::string_view restingHR90, restingHRLastYear, restingHRDelta;
  std::string_view sleepDuration, bedtime, wakeTime;
  std::string_view workoutCount, workoutMinutes, workoutTypes;
  std::string_view weight, bmi;
  std::string_view unitRecords, unitSteps, unitBPM, unitHours, unitTimes, unitMinutes, unitKg;
  std::string_view needsWatch, notCollected, maybeUnauthorized, backfilling, noSamePeriod;
  std::string_view noWorkouts, noBody;
  OpeningTemplate opening;
  std::string_view coverageTitle, dataTitle, insightTitle;
  std::string_view covRange, covLastSync, covCollected, covAbsent, covSuspicious, covNone;
  std::string_view covBackfilling, covWarning, covComplete, covCompleteSuffix, covCompleteAll;
  std::string_view covReached, covYearly, covStale;
  std::string_view signature;
  WeekdayTemplate insightWeekday;
  RestingHRTemplate insightRestingHR;
  BestMonthTemplate insightBestMonth;

  static const SummaryStrings zh;
  static const SummaryStrings en;

  static const SummaryStrings& in(SummaryLang lang) { return lang == SummaryLang::zh ? zh : en; }
};
