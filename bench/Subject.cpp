#include "Subject.h"

#include <nlohmann/json.hpp>

namespace {

constexpr double noonOfLastDay = 1795176000;  // UTC

}  // namespace

Subject::Subject(const std::filesystem::path& dataRoot)
    : clock([] { return noonOfLastDay; }),
      log(std::nullopt, Logger::Level::error, true, clock),
      roster(dataRoot / "members.json", log, clock) {
  roster.load();
  member = roster.members().at(0);
}

Tools::Call Subject::call(const nlohmann::json& arguments) {
  return {arguments, roster, log, SummaryLang::en, clock, grouping};
}
