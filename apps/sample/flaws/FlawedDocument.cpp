#include "sample/flaws/FlawedDocument.h"
#include "sample/flaws/FlawedEncoding.h"
#include "sample/flaws/FlawedProlog.h"

#include <cstddef>
#include <utility>

namespace {

constexpr std::string_view root = "<HealthData";

/// The first unit of `text`: an element of the root with all its lines, or else one line.
std::string_view firstElement(std::string_view text) {
  const std::string_view line = text.substr(0, text.find('\n') + 1);
  if (!line.starts_with(" <") || line.ends_with("/>\n")) return line;
  const std::string_view name = line.substr(2, line.find_first_of(" >", 2) - 2);
  const std::string last = "\n </" + std::string(name) + ">\n";
  return text.substr(0, text.find(last) + last.size());
}

}  // namespace

FlawedDocument::FlawedDocument(ExportDocument& clean, FlawSet flaws, std::uint64_t seed,
                               std::string added)
    : clean(clean), flaws(std::move(flaws)), elements(this->flaws, seed), added(std::move(added)) {}

std::string_view FlawedDocument::nextPiece() {
  std::string_view rest = clean.nextPiece();
  if (flaws.empty()) return rest;
  written.clear();
  bool isFirst = false;
  if (!begun) {
    begun = true;
    isFirst = true;
    // The document type names the root without the bracket, so the mark finds only the element.
    rest.remove_prefix(rest.find(root) + root.size());
    written.append(FlawedProlog::of(flaws)).append(root);
    written.append(FlawedProlog::rootAttributes(flaws));
  }
  while (!rest.empty()) {
    const std::string_view element = firstElement(rest);
    take(element);
    rest.remove_prefix(element.size());
  }
  written = FlawedEncoding::encoded(std::move(written), flaws, isFirst);
  return written;
}

void FlawedDocument::take(std::string_view element) {
  if (element.starts_with(" <ExportDate") && flaws.contains(Flaw::noExportDate)) return;
  if (element.starts_with(" <Me ") && flaws.contains(Flaw::noMe)) return;
  if (element.starts_with("</HealthData>")) written += added;
  written += elements.rewritten(std::string(element));
}
