#include "import/export/FirstUnits.h"
#include "import/export/StoredUnit.h"
#include "import/export/Units.h"

namespace {

/// An export has about a hundred types. Their names and units take a few kilobytes.
constexpr std::size_t mostKept = 1UL << 20;

}  // namespace

const std::string& FirstUnits::firstOf(const ExportedRecord& record, const Search& search) {
  const auto found = units.find(record.type);
  if (found != units.end()) return found->second;
  if (size > mostKept) {
    units.clear();
    size = 0;
  }
  std::string unit = search(record).value_or(std::string(*record.unit));
  size += record.type.size() + unit.size();
  return units.emplace(record.type, std::move(unit)).first->second;
}

void FirstUnits::convert(ExportedRecord& record, const Search& search) {
  if (!record.number || !record.unit || StoredUnit::of(record.type)) return;
  const std::string& first = firstOf(record, search);
  if (*record.unit == first) return;
  const std::optional<double> number =
      Units::converted({.number = *record.number, .unit = *record.unit}, first);
  if (!number) {
    record.unknownUnit = true;
    return;
  }
  record.number = number;
  record.unit = first;
  record.converted = true;
}
