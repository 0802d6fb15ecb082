#pragma once
// The error of a database, with its facts.

#include "platform/ReceiverError.h"

#include <string>
#include <utility>

/// A database operation failed. `message` is the whole sentence; `facts` are for callers that react
/// to the cause.
class DatabaseError : public ReceiverError {
public:
  enum class Act {
    look,  ///< checking a path before SQLite opens it: it is not a regular file
    open,
    work  ///< preparing, binding, stepping or running a statement
  };

  struct Facts {
    Act act;
    /// SQLite's message, repaired to valid UTF-8, without the store's own words; "?" when there is
    /// none. For `Act::look`, the path of the file that is not regular.
    std::string reason;
    int code = 0;         ///< SQLite's primary result code; 0 for `Act::look`
    int systemError = 0;  ///< the errno of the failed system call; 0 when unknown
  };

  /// The message consists of `words` and the reason.
  DatabaseError(const std::string& words, Facts facts)
      : ReceiverError(words + facts.reason), facts(std::move(facts)) {}

  bool isDiskFull() const;  ///< true also when the database has reached its maximum of pages

  Facts facts;
};
