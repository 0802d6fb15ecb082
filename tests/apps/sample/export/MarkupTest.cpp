#include "sample/export/Markup.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Markup, EscapesWhatWouldEndOrOpenSomething) {
  std::string text = "<Record";

  Markup::appendAttribute(text, "device", "<<HKDevice: 0x1>, name:\"A&B\">");

  EXPECT_EQ(text, "<Record device=\"&lt;&lt;HKDevice: 0x1&gt;, name:&quot;A&amp;B&quot;&gt;\"");
}

TEST(Markup, KeepsBreaksThatAReaderWouldTakeForBlanks) {
  std::string text;

  Markup::appendAttribute(text, "value", "a\tb\nc\rd");

  EXPECT_EQ(text, " value=\"a&#9;b&#10;c&#13;d\"");
}

TEST(Markup, LeavesOtherLettersAsTheyAre) {
  std::string text;

  Markup::appendAttribute(text, "sourceName", "Ann\u2019s Apple\u00a0Watch 'kcal/hr·kg'");

  EXPECT_EQ(text, " sourceName=\"Ann\u2019s Apple\u00a0Watch 'kcal/hr·kg'\"");
}

}  // namespace
