#pragma once
// An export as a reader of XML sees it.

#include <expat.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// One element with what stands directly inside it.
struct ExportElement {
  std::string name;
  std::map<std::string, std::string> attributes;
  std::vector<ExportElement> children;

  /// The attribute of that name, "" when there is none.
  std::string text(const std::string& attribute) const {
    const auto found = attributes.find(attribute);
    return found == attributes.end() ? "" : found->second;
  }

  /// The children of that name.
  std::vector<ExportElement> all(std::string_view wanted) const {
    std::vector<ExportElement> found;
    for (const ExportElement& child : children) {
      if (child.name == wanted) found.push_back(child);
    }
    return found;
  }
};

/// A text that a conforming XML parser has read, document type included.
struct ReadExport {
  ExportElement root;
  std::string documentType;  ///< the name it gives
  std::string error;         ///< "" when the text is well-formed

  explicit ReadExport(std::string_view xml) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, begin, end);
    XML_SetStartDoctypeDeclHandler(parser, type);
    if (XML_Parse(parser, xml.data(), static_cast<int>(xml.size()), XML_TRUE) != XML_STATUS_OK) {
      error = std::string(XML_ErrorString(XML_GetErrorCode(parser))) + " in line " +
              std::to_string(XML_GetCurrentLineNumber(parser));
    }
    XML_ParserFree(parser);
  }

private:
  static void begin(void* state, const char* name, const char** attributes) {
    ExportElement element{.name = name, .attributes = {}, .children = {}};
    for (; *attributes != nullptr; attributes += 2)
      element.attributes[attributes[0]] = attributes[1];
    static_cast<ReadExport*>(state)->open.push_back(std::move(element));
  }

  static void end(void* state, const char*) {
    auto& read = *static_cast<ReadExport*>(state);
    ExportElement element = std::move(read.open.back());
    read.open.pop_back();
    (read.open.empty() ? read.root : read.open.back().children.emplace_back()) = std::move(element);
  }

  static void type(void* state, const char* name, const char*, const char*, int) {
    static_cast<ReadExport*>(state)->documentType = name;
  }

  std::vector<ExportElement> open;
};
