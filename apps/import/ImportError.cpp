#include "import/ImportError.h"
#include "platform/Text.h"

ImportError::ImportError(const Phrase& phrase, std::initializer_list<std::string_view> values)
    : std::runtime_error(filled(phrase.en, values)),
      chinese(filled(phrase.zh, values)),
      english(filled(phrase.en, values)) {}

const std::string& ImportError::text(SummaryLang lang) const noexcept {
  return lang == SummaryLang::zh ? chinese : english;
}
