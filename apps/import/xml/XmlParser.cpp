#include "import/xml/XmlParser.h"
#include "import/Failure.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <expat.h>

#include <cstddef>
#include <new>
#include <optional>
#include <string>

namespace {

/// A tag of an export takes a few hundred bytes. The parser buffers an unfinished tag completely,
/// so an endless one would use up all memory.
constexpr long long longestTag = 128LL << 10;

/// After a piece with an unfinished tag, some versions of the parser wait until they have twice as
/// much of it. So a tag is certainly too long only when more than this is unread.
constexpr long long mostUnread = 2 * longestTag;

/// Small enough for the parser's lengths of type int, and for a timely check above.
constexpr std::size_t pieceSize = 128UL << 10;

namespace phrases {
constexpr Phrase broken{"XML 在第 {0} 行第 {1} 列有错误：{2}。没有保存任何数据。",
                        "The XML is broken in line {0}, column {1}: {2}. Nothing was "
                        "stored."};
constexpr Phrase tooLong{
    "从第 {0} 行第 {1} 列开始的标签超过 128 KiB，这不是「健康」App 的导出文件。"
    "没有保存任何数据。",
    "What begins in line {0}, column {1} is longer than 128 KiB; this is "
    "no export of the Health app. Nothing was stored."};
constexpr Phrase nameTooLong{
    "第 {0} 行第 {1} 列的标签里有超过 256 字节的名称，这不是「健康」App "
    "的导出文件。没有保存任何数据。",
    "A name in the tag in line {0}, column {1} is longer than 256 "
    "bytes; this is no export of the Health app. Nothing was "
    "stored."};
constexpr Phrase tooManyNames{
    "到第 {0} 行第 {1} 列为止，元素和属性的名称超过 1,000 种，这不是「健康」"
    "App 的导出文件。没有保存任何数据。",
    "Up to line {0}, column {1} the elements and attributes have "
    "more than 1,000 names; this is no export of the Health app. "
    "Nothing was stored."};

constexpr Phrase badCharacter{"不符合 XML 语法", "not well-formed"};
constexpr Phrase endsInTag{"文件在标签中间断开", "the file ends inside a tag"};
constexpr Phrase endsEarly{"文件不完整", "the file ends too early"};
constexpr Phrase otherTag{"结束标签和开始标签不配对", "an end tag does not match its start tag"};
constexpr Phrase attributeTwice{"同一个属性出现了两次", "an attribute stands twice"};
constexpr Phrase entity{"使用了未定义的实体", "an entity is not defined"};
constexpr Phrase noReference{"字符引用无效", "a character reference names no character"};
constexpr Phrase afterRoot{"根元素结束后还有内容", "something follows the end of the root element"};
}  // namespace phrases

/// Our own phrase for common errors of exports; absent for all others.
std::optional<Phrase> reasonOf(XML_Error error) {
  switch (error) {
    case XML_ERROR_SYNTAX:
    case XML_ERROR_INVALID_TOKEN:
      return phrases::badCharacter;
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_PARTIAL_CHAR:
      return phrases::endsInTag;
    case XML_ERROR_NO_ELEMENTS:
    case XML_ERROR_UNCLOSED_CDATA_SECTION:
      return phrases::endsEarly;
    case XML_ERROR_TAG_MISMATCH:
      return phrases::otherTag;
    case XML_ERROR_DUPLICATE_ATTRIBUTE:
      return phrases::attributeTwice;
    case XML_ERROR_UNDEFINED_ENTITY:
      return phrases::entity;
    case XML_ERROR_BAD_CHAR_REF:
      return phrases::noReference;
    case XML_ERROR_JUNK_AFTER_DOC_ELEMENT:
      return phrases::afterRoot;
    default:
      return std::nullopt;
  }
}

}  // namespace

/// The parser is written in C: no exception may cross it.
struct XmlCallbacks {
  template <typename Call>
  static void guarded(void* self, Call call) {
    auto& parser = *static_cast<XmlParser*>(self);
    if (parser.thrown) return;  // a stopped parser still ends the current element
    try {
      call(parser);
    } catch (...) {
      parser.thrown = std::current_exception();
      XML_StopParser(parser.parser.get(), XML_FALSE);
    }
  }

  static void start(void* self, const char* name, const char** attributes) {
    guarded(self, [&](XmlParser& parser) {
      if (XML_GetCurrentByteCount(parser.parser.get()) > longestTag)
        parser.refuse(phrases::tooLong);
      parser.checkName(name, 0);
      for (std::size_t index = 0; attributes[2 * index] != nullptr; ++index) {
        parser.checkName(attributes[2 * index], index + 1);
      }
      parser.handler.startElement(name, Attributes(attributes));
    });
  }

  static void end(void* self, const char* /*name*/) {
    guarded(self, [](XmlParser& parser) { parser.handler.endElement(); });
  }
};

void XmlParser::Releaser::operator()(XML_ParserStruct* handle) const { XML_ParserFree(handle); }

// The explicit encoding overrides the file's declaration: the text may be UTF-8 only because of the
// repair.
XmlParser::XmlParser(XmlHandler& target) : handler(target), parser(XML_ParserCreate("UTF-8")) {
  if (!parser) throw std::bad_alloc();
  XML_SetUserData(parser.get(), this);
  XML_SetElementHandler(parser.get(), XmlCallbacks::start, XmlCallbacks::end);
}

void XmlParser::parse(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, pieceSize);
    bytes.remove_prefix(piece.size());
    parsePiece(piece);
  }
}

void XmlParser::finish(const Phrase& noElement) {
  const XML_Status status = XML_Parse(parser.get(), nullptr, 0, XML_TRUE);
  if (thrown) std::rethrow_exception(thrown);
  if (status == XML_STATUS_OK) return;
  // The parser has the same error code for an unfinished root.
  const bool none = names.empty() && XML_GetErrorCode(parser.get()) == XML_ERROR_NO_ELEMENTS;
  if (none) throw Failure(noElement);
  fail();
}

void XmlParser::parsePiece(std::string_view piece) {
  const XML_Status status =
      XML_Parse(parser.get(), piece.data(), static_cast<int>(piece.size()), XML_FALSE);
  if (thrown) std::rethrow_exception(thrown);
  if (status != XML_STATUS_OK) fail();
  fed += static_cast<long long>(piece.size());
  // Negative while the parser waits for more; its position is then unchanged.
  const long long index = XML_GetCurrentByteIndex(parser.get());
  if (index >= 0) reached = index;
  if (fed - reached > mostUnread) refuse(phrases::tooLong);
}

void XmlParser::checkName(std::string_view name, std::size_t position) {
  const XmlNames::Verdict verdict = names.use(name, position);
  if (verdict == XmlNames::Verdict::tooLong) refuse(phrases::nameTooLong);
  if (verdict == XmlNames::Verdict::tooMany) refuse(phrases::tooManyNames);
}

long long XmlParser::line() const {
  return static_cast<long long>(XML_GetCurrentLineNumber(parser.get()));
}

long long XmlParser::column() const {
  return static_cast<long long>(XML_GetCurrentColumnNumber(parser.get())) + 1;
}

void XmlParser::refuse(const Phrase& phrase) const {
  throw Failure(phrase, {std::to_string(line()), std::to_string(column())});
}

void XmlParser::fail() const {
  const XML_Error error = XML_GetErrorCode(parser.get());
  const std::optional<Phrase> reason = reasonOf(error);
  // The parser's own message, which is English.
  const char* const words = XML_ErrorString(error);
  const auto text = [&](SummaryLang lang) {
    const std::string_view why = reason ? reason->in(lang) : words == nullptr ? "?" : words;
    return filled(phrases::broken.in(lang),
                  {std::to_string(line()), std::to_string(column()), why});
  };
  throw Failure(text(SummaryLang::zh), text(SummaryLang::en));
}
