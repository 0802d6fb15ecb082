#include "import/ImportError.h"
#include "platform/Text.h"

#include <utility>

ImportError::ImportError(const Phrase& phrase, std::initializer_list<std::string_view> values)
    : ImportError(filled(phrase.in(SummaryLang::zh), values),
                  filled(phrase.in(SummaryLang::en), values)) {}

ImportError::ImportError(std::string chinese, std::string english)
    : std::runtime_error(english), chinese(std::move(chinese)), english(std::move(english)) {}

const std::string& ImportError::text(SummaryLang lang) const noexcept {
  return lang == SummaryLang::zh ? chinese : english;
}
