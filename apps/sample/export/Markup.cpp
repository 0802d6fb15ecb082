#include "sample/export/Markup.h"

namespace {

std::string_view escapeOf(char letter) {
  switch (letter) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";  // a literal line feed would be read as a blank
    case '\r':
      return "&#13;";
    default:
      return {};
  }
}

void open(std::string& text, std::string_view name) {
  text += ' ';
  text += name;
  text += "=\"";
}

}  // namespace

void Markup::appendAttribute(std::string& text, std::string_view name, std::string_view value) {
  open(text, name);
  for (const char letter : value) {
    const std::string_view escape = escapeOf(letter);
    if (escape.empty()) {
      text += letter;
    } else {
      text += escape;
    }
  }
  text += '"';
}

void Markup::appendAttribute(std::string& text, std::string_view name, Stamp stamp) {
  open(text, name);
  text += StampText(stamp).text();
  text += '"';
}

void Markup::appendEntry(std::string& text, std::string_view key, std::string_view value) {
  text += "  <MetadataEntry";
  appendAttribute(text, "key", key);
  appendAttribute(text, "value", value);
  text += "/>\n";
}
