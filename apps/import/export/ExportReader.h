#pragma once
// Reads the XML of an export and passes its elements to a sink.

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

/// Accepts the bytes in pieces of any size and buffers at most one element.
///
/// The stamps of records and workouts, and therefore their days, are converted to the time zone
/// `zone`. A stamp with an unreadable time stays as exported. Without a zone all stamps stay as
/// exported.
///
/// An element that is valid XML but cannot be stored is reported to the sink and skipped. Broken
/// XML throws Failure with line and column. So does a file with deeper nesting, longer tags or more
/// names than any export: such a file exists only to exhaust memory. A file that is not a Health
/// export or not in UTF-8 throws Failure too. Exceptions of the sink are passed on. After an
/// exception the reader must not be used.
///
/// Lines are those of the file. A column counts only the remaining characters of its line, so it is
/// smaller than the file's column by the number of dropped characters before it.
class ExportReader : private XmlHandler {
public:
  /// Both must outlive the reader.
  ExportReader(ExportSink& target, TimeZone& zone) : ExportReader(target, &zone) {}
  explicit ExportReader(ExportSink& target) : ExportReader(target, nullptr) {}

  void feed(std::string_view bytes);
  void finish();  ///< after the last byte

  Irregularities irregularities() const;  ///< so far

  /// The export's own date, at the offset of the phone's clock; absent before the reader reaches it
  /// and when it is unreadable.
  const std::optional<Stamp>& exportDate() const { return dateOfExport; }
  /// The first readable stamp of a record or workout, as exported; absent before it.
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
  // Before Prolog, because forbidden characters must not hide the start of the root element.
  XmlText text;
  Prolog prolog;
  RepeatedAttributes unrepeated;
  XmlParser parser;
  LocalStamps stamps;
  std::optional<Stamp> dateOfExport;
  bool begun = false;                   ///< a non-blank character has appeared
  int depth = 0;                        ///< of the open element; the root has depth 1
  int ignoredDepth = 0;                 ///< of the element whose parts are ignored; 0 means none
  std::optional<WorkoutParts> workout;  ///< the open workout
};
