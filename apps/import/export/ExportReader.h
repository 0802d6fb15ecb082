#pragma once
// Reads the XML of an export and tells a sink what it holds.

#include "import/export/ExportSink.h"
#include "import/export/Irregularities.h"
#include "import/export/LocalStamps.h"
#include "import/export/WorkoutParts.h"
#include "import/xml/Attributes.h"
#include "import/xml/Prolog.h"
#include "import/xml/RepeatedAttributes.h"
#include "import/xml/XmlEncoding.h"
#include "import/xml/XmlParser.h"
#include "import/xml/XmlText.h"
#include "platform/TimeZone.h"

#include <optional>
#include <string>
#include <string_view>

/// Takes the bytes in pieces of any size and keeps no more of them than one element.
///
/// The stamps of records and workouts are told in the time zone `zone`, and so are their days. One
/// whose time cannot be read is told as exported, and without a zone so are all.
///
/// Elements that the XML is sound about but the database cannot take are told to the sink and left
/// out. Broken XML throws Failure with line and column; so does a file that is nested deeper
/// or has longer tags or more names than any export, which only exists to exhaust memory. One that
/// is no Health export, or in another encoding than UTF-8, throws it too. What the sink throws
/// passes through. After an exception the reader is of no more use.
///
/// Lines are those of the file. A column counts the characters that are left of its line, so it is
/// less than the file's by those dropped before it.
class ExportReader : private XmlHandler {
public:
  /// Both outlive the reader.
  ExportReader(ExportSink& target, TimeZone& zone) : ExportReader(target, &zone) {}
  explicit ExportReader(ExportSink& target) : ExportReader(target, nullptr) {}

  void feed(std::string_view bytes);
  void finish();  ///< after the last byte

  Irregularities irregularities() const;  ///< so far

  /// The export's own date, at the offset of the phone's clocks; absent before it and when it
  /// cannot be read.
  const std::optional<Stamp>& exportDate() const { return dateOfExport; }
  /// The first stamp of a record or workout that can be read, as exported; absent before it.
  const std::optional<Stamp>& firstStamp() const { return stamps.first(); }

private:
  ExportReader(ExportSink& target, TimeZone* zone);

  void parse(std::string_view bytes);
  void startElement(std::string_view name, const Attributes& attributes) override;
  void endElement() override;

  void startTopElement(std::string_view name, const Attributes& attributes);
  void startPart(std::string_view name, const Attributes& attributes);
  bool addRecord(const Attributes& attributes);
  bool startWorkout(const Attributes& attributes);
  void addDay(const Attributes& attributes);
  bool hasDay(const LocalStamp& start);

  ExportSink& sink;
  XmlEncoding encoding;
  // What XML forbids goes first: none of it may hide where the root begins.
  XmlText text;
  Prolog prolog;
  RepeatedAttributes unrepeated;
  XmlParser parser;
  LocalStamps stamps;
  std::optional<Stamp> dateOfExport;
  bool begun = false;    ///< a character other than a blank was there
  int depth = 0;         ///< of the element that is open, the root being 1
  int ignoredDepth = 0;  ///< of the element whose parts are of no interest; 0 is none
  std::optional<WorkoutParts> workout;  ///< the one that is open
};
