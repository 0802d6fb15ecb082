#pragma once
// In which time zone a member's days are.

#include "import/Interruption.h"
#include "platform/Stamp.h"
#include "platform/TimeZone.h"

#include <filesystem>
#include <optional>
#include <string>

/// The zone of a member whose export is about to be read.
class MemberZone {
public:
  /// What is known of it before.
  struct Hints {
    std::string member;                          ///< the member's name, for messages
    std::string id;                              ///< the member's
    std::filesystem::path database;              ///< the member's; need not exist
    std::optional<std::string> asked;            ///< by the user
    std::optional<std::string> machine;          ///< the machine's zone; absent when it has no name
    Interrupted interrupted = neverInterrupted;  ///< may end the wait for somebody's lock
  };

  /// The zone that the database's samples are in, else the one that was asked for, else the one
  /// that an earlier import was told, else the machine's. Throws Failure when another one was
  /// asked for than the samples are in, when nobody knows which they are in, when the system does
  /// not know the zone, and when there is none. Failures of the database leave as DatabaseError.
  explicit MemberZone(const Hints& hints);

  TimeZone& zone() { return timeZone; }

  /// Whether somebody has said that this is the zone, or the export agrees with it.
  bool isCertain() const { return !assumed; }

  /// Compares an assumed zone with a stamp as exported, where there is one. Throws Failure when
  /// the clocks of the zone were elsewhere than the phone's: nobody has said that the zone is the
  /// member's, and all days would be another place's for good.
  void confirm(const std::optional<Stamp>& exported);

private:
  bool assumed = false;  ///< the machine's zone, for want of a better one, and not confirmed yet
  TimeZone timeZone;
};

/// Throws Failure when the system knows no zone called `name`.
TimeZone knownZone(const std::string& name);
