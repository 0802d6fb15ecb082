#include "platform/SummaryLang.h"

std::string_view rawValue(SummaryLang lang) { return lang == SummaryLang::zh ? "zh" : "en"; }

std::optional<SummaryLang> summaryLangNamed(std::string_view rawValue) {
  if (rawValue == "zh") return SummaryLang::zh;
  if (rawValue == "en") return SummaryLang::en;
  return std::nullopt;
}
