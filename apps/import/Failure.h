#pragma once
// Why an import cannot go on, told in both languages.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

class DatabaseError;

/// Ends the import; nothing of the run is kept. `what()` is the English text.
class Failure : public std::runtime_error {
public:
  /// `phrase` with its marks "{0}", "{1}", ... replaced by `values`.
  explicit Failure(const Phrase& phrase, std::initializer_list<std::string_view> values = {});

  /// A text that is made otherwise in each language.
  Failure(std::string chinese, std::string english);

  const std::string& text(SummaryLang lang) const noexcept;

private:
  // A pair of texts that copying cannot fail on would need sharing; an error that is thrown once
  // and caught by reference is never copied.
  std::string chinese;
  std::string english;
};

/// Why the import ends when a database fails it; a full disk is named as such. SQLite's sentence
/// about anything else is passed on as it is.
Failure databaseFailure(const DatabaseError& error);

/// The same when the system refuses it something: names the file that `error` is about, where it
/// knows one, and the system's reason in the system's own words.
Failure systemFailure(const std::system_error& error);
