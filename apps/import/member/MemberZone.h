#pragma once
// The time zone of a member's days.

#include "import/Interruption.h"
#include "platform/Stamp.h"
#include "platform/TimeZone.h"

#include <filesystem>
#include <optional>
#include <string>

/// The zone of the member whose export will be read.
class MemberZone {
public:
  /// The known facts before the export is read.
  struct Hints {
    std::string member;                          ///< the member's name, for messages
    std::string id;                              ///< the member's
    std::filesystem::path database;              ///< the member's; need not exist
    std::optional<std::string> asked;            ///< zone requested by the user
    std::optional<std::string> machine;          ///< the machine's zone; absent when it has no name
    Interrupted interrupted = neverInterrupted;  ///< can end the wait for a lock
  };

  /// Uses the zone of the samples in the database, otherwise the requested zone, otherwise the zone
  /// stored by an earlier import, otherwise the machine's zone. Throws Failure when the requested
  /// zone differs from that of the samples, when the zone of the samples is unknown, when the
  /// system does not know the zone, and when there is none. Failures of the database throw
  /// DatabaseError.
  explicit MemberZone(const Hints& hints);

  TimeZone& zone() { return timeZone; }

  /// Whether the zone is known, or the export has confirmed it.
  bool isCertain() const { return !assumed; }

  /// Compares an assumed zone with an exported stamp, if there is one. Throws Failure when the
  /// zone's offset at that moment differs from the phone's. Such a zone is probably not the
  /// member's, and all days would permanently be those of another place.
  void confirm(const std::optional<Stamp>& exported);

private:
  bool assumed = false;  ///< the machine's zone, used as a fallback and not confirmed yet
  TimeZone timeZone;
};

/// The zone called `name`. Throws Failure when the system has no zone of that name.
TimeZone knownZone(const std::string& name);
