#pragma once
// Which version of the export's format a file says it is in.

#include <optional>
#include <string>
#include <string_view>

/// Looks through the beginning of an export's XML for the comment in which its document type tells
/// the version: "<!-- HealthKit Export Version: 14 -->". The document type itself is never read.
class FormatVersion {
public:
  /// Takes the bytes in pieces of any size. Keeps 64 KiB of them at most.
  void look(std::string_view bytes);

  /// A number of one to three digits; `nullopt` when there is none before the root element, or
  /// something else in its place.
  std::optional<int> found() const;

private:
  std::string beginning;
};
