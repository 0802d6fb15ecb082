#include "sample/flaws/FlawedProlog.h"
#include "sample/export/DocumentType.h"
#include "sample/flaws/FlawedEncoding.h"

#include <string_view>

namespace {

constexpr std::string_view end = "]>\n";

/// Inserts `text` before `mark`, which occurs once in the document type.
void insertBefore(std::string& prolog, std::string_view mark, std::string_view text) {
  prolog.insert(prolog.find(mark), text);
}

/// Makes the longer document type of phones of 2022. It declares elements that no export has, a
/// workout's attribute list is still open when the next declaration begins, and the end of another
/// list has no beginning.
void breakType(std::string& prolog) {
  constexpr std::string_view closing = "  endDate CDATA #REQUIRED\n>\n<!ELEMENT WorkoutEvent ";
  const std::size_t open = prolog.find(closing);
  prolog.erase(prolog.find('>', open), 2);
  insertBefore(prolog, "<!ELEMENT HealthData ", "<!-- HealthKit Export Version: 12 -->\n");
  insertBefore(prolog,
               end,
               "<!ELEMENT Correlation ((MetadataEntry | Record)*)>\n"
               "<!-- Note: the records of a correlation are records of the export as well. -->\n"
               "<!ELEMENT Audiogram (SensitivityPoint*)>\n"
               "<!ATTLIST SensitivityPoint\n"
               "  frequencyValue CDATA #REQUIRED\n"
               "  frequencyUnit CDATA #REQUIRED\n"
               ">\n"
               "<!ELEMENT VisionPrescription (RightEye?, LeftEye?)>\n"
               "<!ATTLIST VisionPrescription\n"
               "  type CDATA #REQUIRED\n"
               "  dateIssued CDATA #REQUIRED\n"
               "  expirationDate CDATA #IMPLIED\n"
               "<!ELEMENT RightEye EMPTY>\n"
               "  sphere CDATA #IMPLIED\n"
               "  sphereUnit CDATA #IMPLIED\n"
               ">\n"
               "  device CDATA #IMPLIED\n"
               "  startDate CDATA #REQUIRED\n"
               ">\n");
}

/// Ten entities, each of which expands to ten of the previous one.
void addBomb(std::string& prolog) {
  std::string entities = "<!ENTITY b0 \"a\">\n";
  for (char number = '1'; number <= '9'; ++number) {
    entities.append("<!ENTITY b").append(1, number).append(" \"");
    for (int times = 0; times < 10; ++times) {
      entities.append("&b").append(1, static_cast<char>(number - 1)).append(";");
    }
    entities += "\">\n";
  }
  insertBefore(prolog, end, entities);
}

}  // namespace

std::string FlawedProlog::of(const FlawSet& flaws) {
  std::string prolog(documentType);
  if (flaws.contains(Flaw::brokenDocumentType)) breakType(prolog);
  if (flaws.contains(Flaw::entityBomb)) addBomb(prolog);
  if (const std::string_view name = FlawedEncoding::nameOf(flaws); name != "UTF-8") {
    constexpr std::string_view usual = "UTF-8";
    prolog.replace(prolog.find(usual), usual.size(), name);
  }
  return prolog;
}

std::string FlawedProlog::rootAttributes(const FlawSet& flaws) {
  return flaws.contains(Flaw::entityBomb) ? " comment=\"&b9;\"" : "";
}
