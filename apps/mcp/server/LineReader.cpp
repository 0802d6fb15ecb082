#include "mcp/server/LineReader.h"

#include <new>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t blockSize = 65536;

/// False when memory is not sufficient; `text` is then unchanged.
bool appended(std::string& text, std::string_view piece) {
  try {
    text += piece;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace

LineReader::LineReader(std::unique_ptr<ByteSource> source, std::size_t limit)
    : source(std::move(source)), limit(limit) {
  buffer.reserve(blockSize);
}

std::optional<LineReader::Line> LineReader::next() {
  Line line;
  bool begun = false;
  while (position < buffer.size() || fill()) {
    begun = true;
    const std::string_view rest = std::string_view(buffer).substr(position);
    const std::size_t end = rest.find('\n');
    const std::string_view piece = rest.substr(0, end);
    line.overlong = line.overlong || piece.size() > limit - line.text.size();
    line.overlong = line.overlong || !appended(line.text, piece);
    if (line.overlong) line.text = std::string();
    position += piece.size();
    if (end == std::string_view::npos) continue;
    ++position;
    if (line.text.ends_with('\r')) line.text.pop_back();
    return line;
  }
  if (!begun) return std::nullopt;
  return line;
}

bool LineReader::fill() {
  buffer.resize(blockSize);
  position = 0;
  buffer.resize(source->read(buffer));
  return !buffer.empty();
}
