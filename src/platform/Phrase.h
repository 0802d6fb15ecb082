#pragma once
// Texts for users, in both languages.

#include "platform/SummaryLang.h"

#include <string_view>

/// One phrase in both languages. A phrase with an empty language does not compile.
class Phrase {
public:
  consteval Phrase(std::string_view chinese, std::string_view english)
      : chinese(required(chinese)), english(required(english)) {}

  constexpr std::string_view in(SummaryLang lang) const {
    return lang == SummaryLang::zh ? chinese : english;
  }

private:
  static consteval std::string_view required(std::string_view text) {
    return text.empty() ? throw "a phrase exists in both languages" : text;
  }

  std::string_view chinese;
  std::string_view english;
};
