#pragma once
// The error that ends an import, in both languages.

#include "platform/Phrase.h"
#include "platform/SummaryLang.h"

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

class DatabaseError;

/// Ends the import; none of the run's data is kept. `what()` is the English text.
class Failure : public std::runtime_error {
public:
  /// `phrase` with its marks "{0}", "{1}", ... replaced by `values`.
  explicit Failure(const Phrase& phrase, std::initializer_list<std::string_view> values = {});

  /// A text that is composed differently in each language.
  Failure(std::string chinese, std::string english);

  const std::string& text(SummaryLang lang) const noexcept;

private:
  // A copy that cannot fail would need shared texts. This error is thrown once and caught by
  // reference, so it is never copied.
  std::string chinese;
  std::string english;
};

/// The import's error for a failed database. A full disk has its own message. Any other message of
/// SQLite is passed on unchanged.
Failure databaseFailure(const DatabaseError& error);

/// The import's error for a failed system call: the file of `error`, if known, and the system's own
/// reason.
Failure systemFailure(const std::system_error& error);
