#pragma once
// The XML parser's handle, and elements instead of its callbacks.

#include "import/xml/Attributes.h"
#include "import/xml/XmlNames.h"
#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <cstddef>
#include <exception>
#include <memory>
#include <string_view>

struct XML_ParserStruct;

/// Takes the elements in the order of the file. What it throws leaves XmlParser::parse unchanged.
class XmlHandler {
public:
  virtual ~XmlHandler() = default;

  virtual void startElement(std::string_view name, const Attributes& attributes) = 0;
  virtual void endElement() = 0;
};

/// Parses UTF-8 without a document type declaration, in pieces. Broken XML throws Failure with
/// line and column, counted from 1. So do a tag of more than 128 KiB and more or longer names than
/// XmlNames allows, because memory is bounded by them; a comment may be twice as long at least.
/// Text between the tags is of no interest.
class XmlParser {
public:
  explicit XmlParser(XmlHandler& target);  ///< `target` outlives the parser

  void parse(std::string_view bytes);

  /// After the last byte. A document that is sound as far as it goes, but has no element, throws
  /// Failure with `noElement`.
  void finish(const Phrase& noElement);

  /// Where the element begins that the handler is being told of.
  long long line() const;

  /// Throws Failure: `phrase`, its first mark the line of that place and its second the column.
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
  std::exception_ptr thrown;  ///< by the handler; waits until the parser's C code has returned
  long long fed = 0;          ///< bytes
  long long reached = 0;      ///< bytes before what the parser has not read to its end
};
