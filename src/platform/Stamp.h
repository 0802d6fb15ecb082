#pragma once
// Moments together with their offset from UTC, and the text of both.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// A moment and the local offset from UTC at that moment.
struct Stamp {
  std::int64_t moment = 0;  ///< seconds since 1970-01-01 00:00 UTC
  int offset = 0;           ///< seconds east of UTC, whole minutes

  /// This stamp plus `seconds`. Keeps the offset, as a phone does within one record.
  Stamp after(std::int64_t seconds) const { return {moment + seconds, offset}; }

  bool operator==(const Stamp&) const = default;
};

/// The text of a stamp, "2024-03-01 06:54:32 +0800", without an allocation: a large history has
/// tens of millions of stamps. For the years 1 to 9999.
class StampText {
public:
  static constexpr std::size_t length = 25;

  explicit StampText(Stamp stamp);

  std::string_view text() const { return {letters.data(), letters.size()}; }
  std::string_view day() const { return text().substr(0, 10); }

private:
  std::array<char, length> letters;
};
