#pragma once
// The version of the export's format, as stated in the file.

#include <optional>
#include <string>
#include <string_view>

/// Searches the beginning of an export's XML for the comment with the version, which is in its
/// document type: "<!-- HealthKit Export Version: 14 -->". The document type itself is not parsed.
class FormatVersion {
public:
  /// Adds bytes, in pieces of any size. Keeps at most 64 KiB of them.
  void look(std::string_view bytes);

  /// A number of one to three digits. `nullopt` when it is missing before the root element, or not
  /// such a number.
  std::optional<int> found() const;

private:
  std::string beginning;
};
