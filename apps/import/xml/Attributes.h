#pragma once
// The attributes of one XML element, in any order.

#include <optional>
#include <string_view>

/// Borrowed from the parser and valid only during its call.
class Attributes {
public:
  /// `pairs` is name, value, name, value, ... and ends with a null.
  explicit Attributes(const char* const* pairs) : pairs(pairs) {}

  /// The value of the attribute with that name; `nullopt` when there is none. An empty value is a
  /// value.
  std::optional<std::string_view> find(std::string_view name) const {
    for (const char* const* pair = pairs; *pair != nullptr; pair += 2) {
      // Comparing the first letter is enough in most cases, and millions of elements have several
      // look-ups each.
      if (pair[0][0] == name.front() && pair[0] == name) return std::string_view(pair[1]);
    }
    return std::nullopt;
  }

  /// The same, but `nullopt` for an empty value.
  std::optional<std::string_view> findFilled(std::string_view name) const {
    const std::optional<std::string_view> value = find(name);
    return value && !value->empty() ? value : std::nullopt;
  }

private:
  const char* const* pairs;
};
