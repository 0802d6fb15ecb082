// What real exports are like.

#include "apps/import/CollectingSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

namespace {

using testing::HasSubstr;

constexpr std::string_view record = "<Record type=\"a\" startDate=\"2024-03-01\"/>";

TEST(UncleanExport, MayHaveABrokenDocumentType) {
  const CollectingSink sink = sinkOf(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE HealthData [\n"
      "<!-- HealthKit Export Version: 12 -->\n"
      "<!ELEMENT HealthData (ExportDate,Me,(Record|Workout)*)>\n"
      "<!ATTLIST Record\n"
      "  type CDATA #REQUIRED\n"
      "  unit CDATA #IMPLIED\n"
      "<!ELEMENT Workout EMPTY>\n"
      "  startDate   CDATA #REQUIRED\n"
      ">\n"
      "]>\n"
      "<HealthData locale=\"en_GB\">\n"
      "<Record type=\"a\" startDate=\"2024-03-01\"/>\n"
      "<Record type=\"a\"/>\n"
      "</HealthData>\n");

  EXPECT_EQ(sink.records.size(), 1U);
  ASSERT_EQ(sink.skips.size(), 1U);
  EXPECT_EQ(sink.skips.front().second, 14);  // the lines of the document type count
}

TEST(UncleanExport, MayHaveADocumentTypeLongerThanAnElementMayBe) {
  std::string document = "<!DOCTYPE HealthData [\n";
  for (int line = 0; line < 10000; ++line) document += "<!ATTLIST Record unit CDATA #IMPLIED>\n";
  document.append("]>\n<HealthData>\n<Record/>").append(record).append("</HealthData>");
  CollectingSink sink;

  readInto(sink, document, 1000);

  EXPECT_EQ(sink.records.size(), 1U);
  ASSERT_EQ(sink.skips.size(), 1U);
  EXPECT_EQ(sink.skips.front().second, 10004);
}

TEST(UncleanExport, NeverExpandsAnEntity) {
  const std::string document =
      "<!DOCTYPE HealthData [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;\">]>\n"
      "<HealthData><Record type=\"&b;\" startDate=\"2024-03-01\"/></HealthData>";

  EXPECT_THAT(errorOf(document), HasSubstr("line 2, column"));
  EXPECT_THAT(errorOf(document), HasSubstr("an entity is not defined"));
}

TEST(UncleanExport, LosesForbiddenCharactersAndCountsThem) {
  CollectingSink sink;
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);

  reader.feed(
      exportOf(std::string("<Record type=\"a\v\" startDate=\"2024-03-01\""
                           " sourceName=\"A&#11;n&#x0B;n\x01\"/>\x02")));
  reader.finish();

  ASSERT_EQ(sink.records.size(), 1U);
  EXPECT_EQ(sink.records.front().type, "a");
  EXPECT_EQ(sink.records.front().sourceName, "Ann");
  EXPECT_EQ(reader.irregularities().droppedCharacters, 5);
  EXPECT_EQ(reader.irregularities().replacedSequences, 0);
}

struct ForbiddenCase {
  std::string name;
  std::string document;
  int dropped;
};

void PrintTo(const ForbiddenCase& value, std::ostream* out) { *out << value.name; }

class ForbiddenCharacter : public testing::TestWithParam<ForbiddenCase> {};

TEST_P(ForbiddenCharacter, IsDroppedBeforeTheElementsToo) {
  CollectingSink sink;
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);

  reader.feed(GetParam().document + "<Record type=\"a\" startDate=\"2024-03-01\"/></HealthData>");
  reader.finish();

  EXPECT_EQ(sink.records.size(), 1U);
  EXPECT_EQ(reader.irregularities().droppedCharacters, GetParam().dropped);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ForbiddenCharacter,
    testing::Values(
        ForbiddenCase{"AtTheVeryStart", "\v<HealthData>", 1},
        ForbiddenCase{"InsideTheNameOfTheRoot", "<Health\vData>", 1},
        ForbiddenCase{"BehindTheNameOfTheRoot", "<HealthData\v>", 1},
        ForbiddenCase{"BeforeTheAttributesOfTheRoot", "<HealthData\v locale=\"x\">", 1},
        ForbiddenCase{
            "InsideTheDeclaration", "<!DOCT\vYPE HealthData [\v\x01<!A\v>\v]\v>\n<HealthData>", 6},
        ForbiddenCase{"BehindTheDeclaration", "<!DOCTYPE HealthData []>\v\n\v<HealthData>", 2},
        ForbiddenCase{
            "BehindTheRootOfADeclaration", "<!DOCTYPE HealthData []><HealthData\v\v>", 2}),
    [](const auto& test) { return test.param.name; });

TEST(UncleanExport, HasIllFormedTextReplaced) {
  CollectingSink sink;
  TimeZone zone = berlin();
  ExportReader reader(sink, zone);

  reader.feed(
      exportOf("<Record type=\"a\" startDate=\"2024-03-01\" sourceName=\"A\xC3nn\xED\xA0\"/>"));
  reader.finish();

  ASSERT_EQ(sink.records.size(), 1U);
  EXPECT_EQ(sink.records.front().sourceName, "A\uFFFDnn\uFFFD\uFFFD");
  EXPECT_EQ(reader.irregularities().replacedSequences, 3);
}

TEST(UncleanExport, KeepsQuotesBlanksAndCommasOfNames) {
  const KeptRecord found = recordOf(
      "type=\"a\" startDate=\"2024-03-01\" sourceName=\"Zoë’s “big”\u00A0Watch\""
      " device=\"&lt;&lt;HKDevice: 0x1&gt;, name:Apple Watch, hardware:Watch6,1&gt;\"");

  EXPECT_EQ(found.sourceName, "Zoë’s “big”\u00A0Watch");
  EXPECT_EQ(found.device, "<<HKDevice: 0x1>, name:Apple Watch, hardware:Watch6,1>");
}

TEST(UncleanExport, ReadsTheSameHoweverItIsCut) {
  const std::string document =
      "\xEF\xBB\xBF<!DOCTYPE HealthData [<!ATTLIST a]>" +
      exportOf("<Record type=\"a\" startDate=\"2024-03-01\" sourceName=\"Zoë’s 手表\v&#11;\"/>")
          .substr(39);
  const CollectingSink whole = sinkOf(document);
  ASSERT_EQ(whole.records.size(), 1U);
  ASSERT_EQ(whole.records.front().sourceName, "Zoë’s 手表");

  for (std::size_t size = 1; size < document.size(); ++size) {
    CollectingSink sink;
    readInto(sink, document, size);
    EXPECT_EQ(sink.records, whole.records) << size;
  }
}

TEST(BrokenExport, IsRefusedWithLineAndColumn) {
  const std::string document =
      exportOf("<Record type=\"a\" startDate=\"2024-03-01\"/>\n  <Record <");

  EXPECT_EQ(errorOf(document),
            "The XML is broken in line 4, column 11: not well-formed. Nothing was stored.");
  EXPECT_EQ(errorOf(document, SummaryLang::zh),
            "XML 在第 4 行第 11 列有错误：不符合 XML 语法。没有保存任何数据。");
}

TEST(BrokenExport, DoesNotCountInItsColumnWhatWasDropped) {
  EXPECT_THAT(errorOf(exportOf("\v\v<Record <")), HasSubstr("line 3, column 9:"));
}

TEST(BrokenExport, IsRefusedWhereverItEndsEarly) {
  const std::string document = exportOf("<Record type=\"a\" startDate=\"2024-03-01\"/>\n");
  const std::size_t end = document.find("</HealthData>") + std::string("</HealthData>").size();

  ASSERT_EQ(errorOf(document.substr(0, end)), "");
  for (std::size_t size = 0; size < end; ++size) {
    EXPECT_NE(errorOf(document.substr(0, size)), "") << size;
  }
}

TEST(BrokenExport, TellsThatItEndsTooEarly) {
  const std::string document = exportOf(record);

  EXPECT_THAT(errorOf(document.substr(0, document.find("</HealthData>"))),
              HasSubstr("line 4, column 1: the file ends too early"));
}

struct BrokenCase {
  std::string name;
  std::string elements;
  std::string reason;
};

void PrintTo(const BrokenCase& value, std::ostream* out) { *out << value.name; }

class BrokenElements : public testing::TestWithParam<BrokenCase> {};

TEST_P(BrokenElements, AreRefusedWithTheirReason) {
  EXPECT_THAT(errorOf(exportOf(GetParam().elements)), HasSubstr(GetParam().reason));
}

/// An element with more attributes than any of an export, two of them of one name.
std::string seventyAttributes() {
  std::string element = "<Me";
  for (int number = 0; number < 69; ++number) element += " a" + std::to_string(number) + "=''";
  return element + " a68=''/>";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, BrokenElements,
    testing::Values(
        BrokenCase{"OtherEndTag", "<Me></You>", "an end tag does not match its start tag"},
        BrokenCase{"AttributeTwiceAmongTooMany", seventyAttributes(), "an attribute stands twice"},
        BrokenCase{
            "NoCharacter",
            "<Me a='&#x110000000000000000000000000000000000000000000000000000000000000000;'/>",
            "a character reference names no character"},
        BrokenCase{"Junk", "</HealthData><Me/>", "something follows the end of the root element"},
        BrokenCase{"DocumentTypeInside", "<!DOCTYPE HealthData []>", "not well-formed"},
        BrokenCase{"BareAmpersand", "<Me a='you & me'/>", "not well-formed"}),
    [](const auto& test) { return test.param.name; });

TEST(BrokenExport, IsRefusedForTheSameReasonHoweverItIsCut) {
  const std::string document =
      "<?xml version=\"1.0\" encoding=\"" + std::string(50, '?') + "\"?>\n<!-- no root -->\n";
  for (std::size_t size = 1; size <= document.size(); ++size) {
    CollectingSink sink;
    try {
      readInto(sink, document, size);
      ADD_FAILURE() << size;
    } catch (const Failure& error) {
      EXPECT_THAT(error.what(), HasSubstr("The XML is broken in line 1, column 31: ")) << size;
    }
  }
}

TEST(BrokenExport, IsToldFromTheClinicalDocumentBesideIt) {
  // Broken further down, as phones write it.
  const std::string document = "<?xml version=\"1.0\"?>\n<ClinicalDocument xmlns='a'>\n<a b></x>";

  EXPECT_EQ(errorOf(document),
            "This is the clinical document of an export (export_cda.xml), which holds none of the "
            "records to import: the file wanted is the export.xml beside it.");
}

/// `text`, which is ASCII, with so many zero bytes before and behind each character.
std::string widened(std::string_view text, std::size_t before, std::size_t behind) {
  std::string wide;
  for (const char letter : text) {
    wide += std::string(before, '\0') + letter + std::string(behind, '\0');
  }
  return wide;
}

TEST(Encoding, OtherThanUTF8IsRefusedHoweverTheFileIsCut) {
  const std::string whole = exportOf(record);
  const std::string declared = "<?xml version=\"1.0\" encoding=";
  const std::vector<std::pair<std::string, std::string>> documents{
      {widened(whole, 1, 0), "UTF-16"},
      {widened(whole, 0, 1), "UTF-16"},
      {"\xfe\xff" + widened(whole, 1, 0), "UTF-16"},
      {"\xff\xfe" + widened(whole, 0, 1), "UTF-16"},
      {widened(whole, 3, 0), "UTF-32"},
      {widened(whole, 0, 3), "UTF-32"},
      {declared + "\"ISO-8859-1\"?><HealthData/>", "ISO-8859-1"},
      {declared + " 'windows-1252' ?><HealthData/>", "windows-1252"},
      {"\xef\xbb\xbf" + declared + "\"utf-16\"?><HealthData/>", "UTF-16"},
      {declared + "\"gbk\"?><HealthData/>", "GBK"},
      {declared + "\"Grandmothers-8\"?><HealthData/>", "another encoding"}};
  for (const auto& [document, name] : documents) {
    for (const std::size_t size : {std::size_t{1}, std::size_t{3}, std::size_t{1000}}) {
      CollectingSink sink;
      try {
        readInto(sink, document, size);
        ADD_FAILURE() << name;
      } catch (const Failure& error) {
        EXPECT_EQ(error.text(SummaryLang::en),
                  "The file is in " + name +
                      " instead of UTF-8; another program may have saved it. Take the file as the "
                      "phone exported it. Nothing was stored.");
      }
    }
  }
}

TEST(Encoding, OfUTF8AndItsPartsIsTaken) {
  for (const char* name : {"UTF-8", "utf-8", "UTF8", "US-ASCII", "us-ascii"}) {
    const std::string document =
        "<?xml version=\"1.0\" encoding=\"" + std::string(name) + "\"?><HealthData/>";
    EXPECT_EQ(errorOf(document), "") << name;
  }
  EXPECT_EQ(errorOf("<?xml version='1.0'?><HealthData encoding='UTF-16'/>"), "");
  EXPECT_EQ(errorOf(std::string("\0<HealthData/>", 14)), "");
}

TEST(BrokenExport, IsToldFromAnotherKindOfFile) {
  using namespace std::string_view_literals;
  for (const std::string_view document : {""sv,
                                          "<?xml version=\"1.0\"?>\n<html/>"sv,
                                          "date,steps\n2024-03-01,1000\n"sv,
                                          "\xff\xd8\xff\xe0 a picture"sv,
                                          "<!DOCTYPE HealthData [\n<!ELEMENT Health"sv,
                                          "\0\0\0\x20"
                                          "ftypqt a film"sv,
                                          "\0\0\0\x0c"
                                          "jP a picture"sv,
                                          "\x0c\0\0\0 numbers"sv}) {
    EXPECT_THAT(errorOf(document), HasSubstr("There is no HealthData element")) << document;
  }
}

}  // namespace
