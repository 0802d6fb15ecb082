#include "bench/import/BareParse.h"
#include "import/xml/Prolog.h"

#include <expat.h>
#include <zip.h>

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

/// The import's own block size.
constexpr int pieceSize = 131072;

struct ArchiveCloser {
  void operator()(zip* archive) const { zip_discard(archive); }
};

struct EntryCloser {
  void operator()(zip_file* entry) const { zip_fclose(entry); }
};

struct ParserReleaser {
  void operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }
};

using Archive = std::unique_ptr<zip, ArchiveCloser>;
using Entry = std::unique_ptr<zip_file, EntryCloser>;
using Parser = std::unique_ptr<XML_ParserStruct, ParserReleaser>;

void require(bool sound, const char* what) {
  if (!sound) throw std::runtime_error(std::string("the export cannot be read: ") + what);
}

Entry openedXml(zip* archive) {
  const zip_int64_t index = zip_name_locate(archive, "export.xml", ZIP_FL_NODIR);
  require(index >= 0, "it has no export.xml");
  Entry entry(zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0));
  require(entry != nullptr, "its export.xml does not open");
  return entry;
}

/// Returns the count of bytes read; 0 at the end.
int inflate(zip_file* entry, void* buffer) {
  const zip_int64_t count = zip_fread(entry, buffer, pieceSize);
  require(count >= 0, "its export.xml does not inflate");
  return static_cast<int>(count);
}

/// Parses up to the beginning of the root element.
void parseProlog(zip_file* entry, XML_Parser parser) {
  Prolog prolog;
  std::array<char, pieceSize> piece{};
  while (!prolog.over()) {
    const int count = inflate(entry, piece.data());
    require(count > 0, "it has no root element");
    const std::string_view text =
        prolog.passed(std::string_view(piece.data(), static_cast<std::size_t>(count)));
    const XML_Status status =
        XML_Parse(parser, text.data(), static_cast<int>(text.size()), XML_FALSE);
    require(status == XML_STATUS_OK, "its XML is broken");
  }
}

/// Parses the rest, inflated directly into the parser's buffer.
void parseElements(zip_file* entry, XML_Parser parser) {
  int count = 0;
  do {
    void* const buffer = XML_GetBuffer(parser, pieceSize);
    if (buffer == nullptr) throw std::bad_alloc();
    count = inflate(entry, buffer);
    const XML_Status status = XML_ParseBuffer(parser, count, count == 0 ? XML_TRUE : XML_FALSE);
    require(status == XML_STATUS_OK, "its XML is broken");
  } while (count > 0);
}

}  // namespace

Cost bareParse(const std::filesystem::path& path) {
  const CostMeter meter;
  const Archive archive(zip_open(path.c_str(), ZIP_RDONLY, nullptr));
  require(archive != nullptr, "it is no archive");
  const Entry entry = openedXml(archive.get());
  const Parser parser(XML_ParserCreate("UTF-8"));
  if (!parser) throw std::bad_alloc();
  XML_SetStartElementHandler(parser.get(), [](void*, const char*, const char**) {});
  parseProlog(entry.get(), parser.get());
  parseElements(entry.get(), parser.get());
  return meter.taken();
}
