#pragma once
// The attributes of one XML element, whatever order they stand in.

#include <optional>
#include <string_view>

/// Borrowed from the parser and valid during the call that brings it.
class Attributes {
public:
  /// `pairs` is name, value, name, value, ... and ends with a null.
  explicit Attributes(const char* const* pairs) : pairs(pairs) {}

  /// The value of the attribute of that name; `nullopt` when the element has none. An empty value
  /// is there.
  std::optional<std::string_view> find(std::string_view name) const {
    for (const char* const* pair = pairs; *pair != nullptr; pair += 2) {
      // The first letters differ nearly always, and several are asked for in millions of elements.
      if (pair[0][0] == name.front() && pair[0] == name) return std::string_view(pair[1]);
    }
    return std::nullopt;
  }

  /// The same, an empty value counting as none.
  std::optional<std::string_view> findFilled(std::string_view name) const {
    const std::optional<std::string_view> value = find(name);
    return value && !value->empty() ? value : std::nullopt;
  }

private:
  const char* const* pairs;
};
