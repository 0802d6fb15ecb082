#include "summary/SummaryText.h"
#include "platform/AppleFormat.h"
#include "platform/Phrase.h"
#include "platform/Text.h"
#include "summary/SummaryStrings.h"

#include <span>
#include <string_view>
#include <vector>

namespace {

/// A list of kinds of data. The separator is the same in both languages.
std::string kinds(std::span<const std::string> names, std::string_view ifNone) {
  return names.empty() ? std::string(ifNone) : joined(names, "、");
}

void addRange(Lines& lines, const SummaryCoverage& coverage, const SummaryStrings& strings) {
  if (coverage.firstDay.empty()) {
    lines.add(strings.covRange, ":", strings.covNone);
  } else {
    lines.add(strings.covRange, ":", coverage.firstDay, " ~ ", coverage.lastDay);
  }
}

void addCompleteness(Lines& lines, const SummaryCoverage& coverage, const SummaryStrings& strings) {
  if (coverage.completeFrom.empty()) return;
  const bool all = !coverage.firstDay.empty() && !coverage.backfilling &&
                   coverage.completeFrom == coverage.firstDay;
  lines.add(strings.covComplete,
            ":",
            coverage.completeFrom,
            " ",
            all ? strings.covCompleteAll : strings.covCompleteSuffix);
}

void addBackfill(Lines& lines, const SummaryCoverage& coverage, const SummaryStrings& strings) {
  if (!coverage.backfilling) return;
  if (coverage.backfillFrontier.empty()) {
    lines.add(strings.covBackfilling);
  } else {
    lines.add(strings.covBackfilling, "(", strings.covReached, coverage.backfillFrontier, ")");
  }
}

void addYears(Lines& lines, const SummaryCoverage& coverage, const SummaryStrings& strings,
              const DigitGrouping& grouping) {
  if (coverage.yearly.size() < 2) return;
  std::vector<std::string> years;
  for (const auto& [year, count] : coverage.yearly) {
    years.push_back(year + ":" + grouped(count, grouping));
  }
  lines.add(strings.covYearly, ":", joined(years, " / "));
}

void addLastSync(Lines& lines, const SummaryCoverage& coverage, const SummaryStrings& strings,
                 double now) {
  if (!coverage.lastSyncAt || *coverage.lastSyncAt <= 0) return;
  constexpr double staleAfter = 259200;
  lines.add(strings.covLastSync, ":", AppleFormat::minuteText(*coverage.lastSyncAt));
  if (now - *coverage.lastSyncAt > staleAfter) lines.add(strings.covStale);
}

void addKinds(Lines& lines, const SummaryCoverage& coverage, const SummaryStrings& strings) {
  if (coverage.collected.empty() && coverage.absentExpected.empty() &&
      coverage.suspicious.empty()) {
    return;
  }
  lines.add(strings.covCollected, ":", kinds(coverage.collected, strings.covNone));
  if (!coverage.absentExpected.empty()) {
    lines.add(strings.covAbsent, ":", kinds(coverage.absentExpected, strings.covNone));
  }
  lines.add(strings.covSuspicious, ":", kinds(coverage.suspicious, strings.covNone));
}

}  // namespace

std::string SummaryText::coverageBlock(const SummaryCoverage& coverage, SummaryLang lang,
                                       double now, const DigitGrouping& grouping) {
  const SummaryStrings& strings = SummaryStrings::in(lang);
  Lines lines;
  addRange(lines, coverage, strings);
  addCompleteness(lines, coverage, strings);
  addBackfill(lines, coverage, strings);
  addYears(lines, coverage, strings, grouping);
  addLastSync(lines, coverage, strings, now);
  addKinds(lines, coverage, strings);
  lines.add(strings.covWarning);
  return lines.joined();
}

namespace {

/// Replaces an empty name. The resulting English sentence is intended.
constexpr Phrase nameless{"我", "my"};
constexpr Phrase sampleCount{"({0} 个样本)", " ({0} samples)"};

constexpr std::string_view indent = "    ";

void addCard(Lines& lines, const SummaryCard& card, SummaryLang lang) {
  lines.add("· ", card.title);
  for (const Metric& metric : card.metrics) {
    if (metric.text.empty()) continue;
    const bool counted = metric.samples.value_or(0) >= 1;
    lines.add(indent,
              metric.label,
              ": ",
              metric.text,
              counted ? filled(sampleCount.in(lang), {std::to_string(*metric.samples)}) : "");
  }
  if (card.needsDevice && card.state == DataState::absentExpected) {
    lines.add(indent, *card.needsDevice);
  }
}

}  // namespace

std::string SummaryText::render(const HealthSummary& summary, SummaryLang lang, Options options,
                                double now, const DigitGrouping& grouping) {
  const SummaryStrings& strings = SummaryStrings::in(lang);
  Lines lines;
  if (options.includeOpening) {
    lines.add(strings.opening(summary.person.empty() ? nameless.in(lang) : summary.person));
    lines.add("");
  }
  lines.add(strings.coverageTitle);
  lines.add(coverageBlock(summary.coverage, lang, now, grouping));
  lines.add("");
  lines.add(strings.dataTitle);
  for (const SummaryCard& card : summary.cards) addCard(lines, card, lang);
  if (!summary.insights.empty()) {
    lines.add("");
    lines.add(strings.insightTitle);
    for (const Insight& insight : summary.insights) lines.add("· ", insight.text);
  }
  if (options.includeSignature) {
    lines.add("");
    lines.add(strings.signature);
  }
  return lines.joined();
}
