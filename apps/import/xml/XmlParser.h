#pragma once
// The XML parser's handle, with a handler of elements instead of C callbacks.

#include "import/xml/Attributes.h"
#include "import/xml/XmlNames.h"
#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <cstddef>
#include <exception>
#include <memory>
#include <string_view>

struct XML_ParserStruct;

/// Receives the elements in the order of the file. XmlParser::parse passes its exceptions on.
class XmlHandler {
public:
  virtual ~XmlHandler() = default;

  virtual void startElement(std::string_view name, const Attributes& attributes) = 0;
  virtual void endElement() = 0;
};

/// Parses UTF-8 without a document type declaration, in pieces. Broken XML throws Failure with line
/// and column, counted from 1. To limit memory, so do a tag of more than 128 KiB and more or longer
/// names than XmlNames allows; the limit for a comment is at least twice as high. Text between tags
/// is ignored.
class XmlParser {
public:
  explicit XmlParser(XmlHandler& target);  ///< `target` must outlive the parser

  void parse(std::string_view bytes);

  /// Call this after the last byte. Throws Failure with `noElement` when the document has no error
  /// so far but no element.
  void finish(const Phrase& noElement);

  /// The line of the element that the handler is receiving.
  long long line() const;

  /// Throws Failure with `phrase`; "{0}" is the line of that place and "{1}" the column.
  [[noreturn]] void refuse(const Phrase& phrase) const;

private:
  friend struct XmlCallbacks;

  struct Releaser {
    void operator()(XML_ParserStruct* handle) const;
  };

  void parsePiece(std::string_view piece);
  void checkName(std::string_view name, std::size_t position);
  long long column() const;
  [[noreturn]] void fail() const;

  XmlHandler& handler;
  XmlNames names;
  std::unique_ptr<XML_ParserStruct, Releaser> parser;
  std::exception_ptr thrown;  ///< by the handler; rethrown after the parser's C code has returned
  long long fed = 0;          ///< bytes
  long long reached = 0;      ///< bytes that the parser has processed completely
};
