#pragma once
// The irregularities of exports from phones, other programs and cloud drives.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

/// One irregularity of an export.
enum class Flaw {
  // Flaws that write some elements of the clean export differently.
  repeatedAttributes,
  controlCharacters,
  workoutActivities,
  deviceAddresses,
  eightTimes,
  // Flaws that add elements, on the days before the clean export begins.
  mixedUnits,
  correlations,
  workoutTotals,
  bareNames,
  twoSleepPrograms,
  oldRings,
  noNumbers,
  twelveHourStamps,
  otherElements,
  // Flaws before the first element.
  brokenDocumentType,
  noExportDate,
  noMe,
  // Flaws of the archive.
  otherNames,
  macTwins,
  storedEntry,
  dataDescriptor,
  zip64,
  cdaBeside,
  otherFiles,
  // Flaws that make the export unreadable, or unsafe to read.
  entityBomb,
  cdaAlone,
  cutOff,
  empty,
  cloudStub,
  utf16,
  utf16Mark,
  otherEncoding,
};

/// The part that a flaw changes. Records: elements of the XML. Document: the XML around them.
/// Archive: the files; such a flaw needs an archive.
enum class FlawKind { records, document, archive };

struct FlawRow {
  Flaw flaw;
  std::string_view name;  ///< on the command line
  Phrase text;            ///< the effect on the export, in one line
  FlawKind kind;
  bool readable;  ///< a good reader still imports the whole export
};

using FlawSet = std::set<Flaw>;

namespace Flaws {

/// Every flaw once, in the order of `Flaw`.
std::span<const FlawRow> rows();

const FlawRow& rowOf(Flaw flaw);

/// The flaw with that name; `nullopt` when there is none.
std::optional<Flaw> named(std::string_view name);

/// All flaws that leave an export readable. For a plain XML export, those of archives are omitted.
FlawSet readable(bool isArchive);

/// The names of `flaws`, separated by ", ".
std::string names(const FlawSet& flaws);

/// One line per flaw, each ending in a line feed: its name and its effect.
std::string list(SummaryLang lang);

}  // namespace Flaws
