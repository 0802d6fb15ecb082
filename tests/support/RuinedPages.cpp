#include "support/RuinedPages.h"
#include "platform/Files.h"

#include <cstddef>
#include <string>

namespace {

/// The big-endian number in bytes 16 and 17 of the file's header.
std::size_t pageSizeOf(std::string_view file) {
  const auto byte = [file](std::size_t index) { return static_cast<unsigned char>(file[index]); };
  return static_cast<std::size_t>(byte(16)) * 256 + byte(17);
}

/// Whether a page is an interior page, by its first byte: 2 in an index, 5 in a table.
bool leadsOn(std::string_view page) { return page.front() == 2 || page.front() == 5; }

}  // namespace

int ruinPages(TestDatabase& database, std::string_view marker) {
  std::string file = fileContents(database.path()).value();
  const std::size_t pageSize = pageSizeOf(file);
  int ruined = 0;
  for (std::size_t start = 0; start < file.size(); start += pageSize) {
    const std::string_view page = std::string_view(file).substr(start, pageSize);
    if (leadsOn(page) || page.find(marker) == page.npos) continue;
    file.replace(start, page.size(), page.size(), '\xFF');
    ++ruined;
  }
  database.replaceFile(file);
  return ruined;
}
