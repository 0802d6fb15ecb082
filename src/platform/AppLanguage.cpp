#include "platform/AppLanguage.h"
#include "platform/System.h"
#include "platform/Text.h"

#include <algorithm>

namespace {

bool belongsTo(std::string_view tag, std::string_view language) {
  if (!tag.starts_with(language)) return false;
  tag.remove_prefix(language.size());
  return tag.empty() || tag.front() == '-' || tag.front() == '_';
}

}  // namespace

std::optional<SummaryLang> AppLanguage::match(std::string_view tag) {
  const std::string lowered = lowerCased(tag);
  if (belongsTo(lowered, "zh")) return SummaryLang::zh;
  if (belongsTo(lowered, "en")) return SummaryLang::en;
  return std::nullopt;
}

SummaryLang AppLanguage::resolve(std::span<const std::string> bundleLocalizations,
                                 std::span<const std::string> bundlePreferred,
                                 std::span<const std::string> system) {
  const auto spoken = [](const std::string& tag) { return match(tag).has_value(); };
  if (std::ranges::any_of(bundleLocalizations, spoken) && !bundlePreferred.empty()) {
    if (const std::optional<SummaryLang> preferred = match(bundlePreferred.front()))
      return *preferred;
  }
  const auto first = std::ranges::find_if(system, spoken);
  return first == system.end() ? SummaryLang::en : *match(*first);
}

bool AppLanguage::isChinese() {
  return resolve(System::bundleLocalizations(),
                 System::bundlePreferredLocalizations(),
                 System::preferredLanguages()) == SummaryLang::zh;
}
