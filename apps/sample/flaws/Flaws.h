#pragma once
// What is wrong with exports as phones, other programs and cloud drives leave them.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

/// One irregularity that an export can be given.
enum class Flaw {
  // Some elements of the clean export are written in another way.
  repeatedAttributes,
  controlCharacters,
  workoutActivities,
  deviceAddresses,
  eightTimes,
  // Elements are added, on the days before the clean export begins.
  mixedUnits,
  correlations,
  workoutTotals,
  bareNames,
  twoSleepPrograms,
  oldRings,
  noNumbers,
  twelveHourStamps,
  otherElements,
  // What stands before the first element is different.
  brokenDocumentType,
  noExportDate,
  noMe,
  // The archive is different.
  otherNames,
  macTwins,
  storedEntry,
  dataDescriptor,
  zip64,
  cdaBeside,
  otherFiles,
  // No reader can read, or should read, what comes of these.
  entityBomb,
  cdaAlone,
  cutOff,
  empty,
  cloudStub,
  utf16,
  utf16Mark,
  otherEncoding,
};

/// What a flaw changes. Records: elements of the XML. Document: what stands around them. Archive:
/// the files, so that it takes an archive.
enum class FlawKind { records, document, archive };

struct FlawRow {
  Flaw flaw;
  std::string_view name;  ///< on the command line
  Phrase text;            ///< what is found in the export, in one line
  FlawKind kind;
  bool readable;  ///< a good reader takes the whole export all the same
};

using FlawSet = std::set<Flaw>;

namespace Flaws {

/// Every flaw once, in the order of `Flaw`.
std::span<const FlawRow> rows();

const FlawRow& rowOf(Flaw flaw);

/// The flaw of that name; `nullopt` when there is none.
std::optional<Flaw> named(std::string_view name);

/// All flaws with which an export stays readable. An export that is XML alone has none of archives.
FlawSet readable(bool isArchive);

/// The names of `flaws`, ", " between them.
std::string names(const FlawSet& flaws);

/// A line for every flaw, ending in a line feed: its name and what it is.
std::string list(SummaryLang lang);

}  // namespace Flaws
