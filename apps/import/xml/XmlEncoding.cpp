#include "import/xml/XmlEncoding.h"
#include "import/Failure.h"
#include "platform/Phrase.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>

namespace {

namespace phrases {

constexpr Phrase knownEncoding{
    "文件的编码是 {0}，不是 UTF-8，可能被别的程序另存过；请用手机导出的原文件。没有保存任何数据。",
    "The file is in {0} instead of UTF-8; another program may have saved it. Take the file as "
    "the phone exported it. Nothing was stored."};
constexpr Phrase otherEncoding{
    "文件的编码不是 UTF-8，可能被别的程序另存过；请用手机导出的原文件。没有保存任何数据。",
    "The file is in another encoding instead of UTF-8; another program may have saved it. Take "
    "the file as the phone exported it. Nothing was stored."};

}  // namespace phrases

constexpr std::string_view declarationStart = "<?xml";

/// A declaration is shorter; the parser refuses a longer one.
constexpr std::size_t longestDeclaration = 1024;

/// The encoding recognised by the first four bytes of a document; empty when they may be UTF-8.
/// UTF-16 without a mark begins with two characters below 256, which contain zero bytes. Pictures
/// and films also begin with numbers that contain zero bytes, so UTF-32 must begin with "<".
std::string_view shownEncoding(std::string_view start) {
  using namespace std::string_view_literals;
  if (start.starts_with("\xff\xfe") || start.starts_with("\xfe\xff")) return "UTF-16";
  if (start.size() < 4) return {};
  if (start.starts_with("\0\0\0<"sv) || start.starts_with("<\0\0\0"sv)) return "UTF-32";
  std::array<bool, 4> zero{};
  std::ranges::transform(start.substr(0, 4), zero.begin(), [](char byte) { return byte == 0; });
  if (zero == std::array{true, false, true, false} ||
      zero == std::array{false, true, false, true}) {
    return "UTF-16";
  }
  return {};
}

/// The value of the pseudo-attribute "encoding" in `declaration`; empty when there is none.
std::string_view declaredEncoding(std::string_view declaration) {
  constexpr std::string_view blanks = " \t\r\n";
  constexpr std::string_view name = "encoding";
  const std::size_t place = declaration.find(name);
  if (place == std::string_view::npos) return {};
  std::string_view rest = declaration.substr(place + name.size());
  rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
  if (!rest.starts_with('=')) return {};
  rest.remove_prefix(1);
  rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
  if (!rest.starts_with('"') && !rest.starts_with('\'')) return {};
  const char quote = rest.front();
  rest.remove_prefix(1);
  return rest.substr(0, rest.find(quote));
}

bool isPartOfUTF8(std::string_view encoding) {
  constexpr std::array<std::string_view, 4> names{"utf-8", "utf8", "us-ascii", "ascii"};
  return std::ranges::find(names, lowerCased(encoding)) != names.end();
}

/// The usual name of the declared encoding if it is well known; empty otherwise. An unknown name
/// may contain anything, so it is not shown.
std::string_view wellKnown(std::string_view encoding) {
  constexpr std::array<std::string_view, 40> names{
      "UTF-7",        "UTF-16",       "UTF-16BE",     "UTF-16LE",     "UTF-32",
      "UTF-32BE",     "UTF-32LE",     "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",
      "ISO-8859-4",   "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",
      "ISO-8859-9",   "ISO-8859-10",  "ISO-8859-13",  "ISO-8859-14",  "ISO-8859-15",
      "ISO-8859-16",  "windows-1250", "windows-1251", "windows-1252", "windows-1253",
      "windows-1254", "windows-1255", "windows-1256", "windows-1257", "windows-1258",
      "macintosh",    "KOI8-R",       "GB18030",      "GBK",          "GB2312",
      "Big5",         "Shift_JIS",    "EUC-JP",       "EUC-KR",       "ISO-2022-JP"};
  const std::string wanted = lowerCased(encoding);
  const auto* const found = std::ranges::find(names, wanted, lowerCased);
  return found == names.end() ? std::string_view() : *found;
}

/// Whether XML allows `encoding` as a name. The parser refuses any other name.
bool isName(std::string_view encoding) {
  return !encoding.empty() && std::ranges::all_of(encoding, [](char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
           (byte >= '0' && byte <= '9') || byte == '.' || byte == '_' || byte == '-';
  });
}

}  // namespace

std::string_view XmlEncoding::checked(std::string_view bytes) {
  if (decided) return bytes;
  start += bytes;
  decided = decides();
  return decided ? start : std::string_view();
}

std::string_view XmlEncoding::rest() {
  if (decided) return {};
  decided = true;
  return start;
}

/// Whether the start is sufficient for the decision; throws for another encoding.
bool XmlEncoding::decides() const {
  const std::string_view shown = shownEncoding(start);
  if (!shown.empty()) throw Failure(phrases::knownEncoding, {shown});
  if (start.size() < 4) return false;
  std::string_view text = start;
  constexpr std::string_view mark = "\xef\xbb\xbf";
  if (text.starts_with(mark)) text.remove_prefix(mark.size());
  text = text.substr(0, longestDeclaration);
  if (!text.starts_with(declarationStart)) return !declarationStart.starts_with(text);
  const std::size_t end = text.find("?>");
  if (end == std::string_view::npos) return text.size() == longestDeclaration;
  const std::string_view encoding = declaredEncoding(text.substr(0, end));
  if (!isName(encoding) || isPartOfUTF8(encoding)) return true;
  const std::string_view known = wellKnown(encoding);
  if (known.empty()) throw Failure(phrases::otherEncoding);
  throw Failure(phrases::knownEncoding, {known});
}
