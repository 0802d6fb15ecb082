#pragma once
// What a database refuses us, with the facts.

#include "platform/ReceiverError.h"

#include <string>
#include <utility>

/// A database fails us. `message` is the whole sentence, and `facts` are for who must act on them.
class DatabaseError : public ReceiverError {
public:
  enum class Act {
    look,  ///< at a place where SQLite opens a file, before it does: there lies something else
    open,
    work  ///< preparing, binding, stepping or running a statement
  };

  struct Facts {
    Act act;
    /// SQLite's sentence, repaired to valid UTF-8, without the words that the store puts before it;
    /// "?" where it has none. Of `Act::look`, the path of what is no regular file.
    std::string reason;
    int code = 0;         ///< SQLite's primary result code; 0 of `Act::look`
    int systemError = 0;  ///< the errno of the system's own refusal; 0 when it is not known
  };

  /// The message is `words` and then the reason.
  DatabaseError(const std::string& words, Facts facts)
      : ReceiverError(words + facts.reason), facts(std::move(facts)) {}

  bool isDiskFull() const;  ///< or the database has as many pages as it may

  Facts facts;
};
