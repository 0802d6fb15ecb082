#include "import/xml/Prolog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace {

std::string passedInPieces(std::string_view bytes, std::size_t size) {
  Prolog prolog;
  std::string passed;
  for (std::size_t position = 0; position < bytes.size(); position += size) {
    passed += prolog.passed(bytes.substr(position, size));
  }
  return passed;
}

/// What `bytes` become without their blanks, line feeds included.
std::string passedWithoutBlanks(std::string_view bytes) {
  std::string passed = passedInPieces(bytes, bytes.size());
  std::erase_if(passed, [](char byte) { return byte == ' ' || byte == '\n'; });
  return passed;
}

TEST(Prolog, PassesAFileWithoutADocumentType) {
  constexpr std::string_view document =
      "<?xml version=\"1.0\"?>\n<!-- <!DOCTYPE a> -->\n<HealthData a='<!DOCTYPE'>é</HealthData>";

  EXPECT_EQ(passedInPieces(document, document.size()), document);
}

TEST(Prolog, BlanksTheDocumentTypeCharacterByCharacter) {
  EXPECT_EQ(passedInPieces("<!DOCTYPE HealthData [\n<!--é-->\r\n]>\n<HealthData>", 7),
            "                      \n        \r\n  \n<HealthData>");
}

TEST(Prolog, FindsTheSameEndHoweverTheFileIsCut) {
  constexpr std::string_view document =
      "<?xml?><!DOCTYPE HealthData [<!ELEMENT HealthData (a)> <HealthDatum> ]> <!-- - -- --- -->\n"
      "<HealthData\tlocale=\"x\"/>";
  const std::string whole = passedInPieces(document, document.size());
  ASSERT_TRUE(whole.ends_with("\n<HealthData\tlocale=\"x\"/>"));

  for (std::size_t size = 1; size < document.size(); ++size) {
    EXPECT_EQ(passedInPieces(document, size), whole) << size;
  }
}

TEST(Prolog, EndsADeclarationThatNeverClosesWhereTheRootBegins) {
  EXPECT_EQ(passedWithoutBlanks("<!DOCTYPE HealthData [\n<!ATTLIST Record\n  type CDATA #REQUIRED\n"
                                "<!ELEMENT Workout EMPTY>\n]>\n<HealthData><Me/></HealthData>"),
            "<HealthData><Me/></HealthData>");
  EXPECT_EQ(passedWithoutBlanks("<!DOCTYPE HealthData [\n<!ATTLIST Record\n  type \"CDATA\n]\n"
                                "<HealthData/>"),
            "<HealthData/>");
}

TEST(Prolog, DoesNotTakeARootInAQuotedTextForTheRoot) {
  EXPECT_EQ(passedWithoutBlanks("<!DOCTYPE HealthData [<!ENTITY a \"<HealthData>\">"
                                "<!-- a <HealthData> --> ]><HealthData/>"),
            "<HealthData/>");
}

TEST(Prolog, EndsAnExternalDeclarationToo) {
  EXPECT_EQ(passedWithoutBlanks("<!DOCTYPE HealthData SYSTEM \"a.dtd\"><HealthData/>"),
            "<HealthData/>");
}

TEST(Prolog, HasNoEndInADeclarationWithoutARoot) {
  Prolog prolog;

  prolog.passed("<!DOCTYPE HealthData [ <!ELEMENT a EMPTY> ]> <Other/>");

  EXPECT_FALSE(prolog.over());
}

}  // namespace
