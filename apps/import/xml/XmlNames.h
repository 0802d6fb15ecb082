#pragma once
// The names of elements and attributes that a document has used.

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Counts different names. The parser never forgets a name, so a document with ever new names would
/// use up all memory. This class detects it in time. An export has fewer than two hundred names.
class XmlNames {
public:
  static constexpr std::size_t longest = 256;  ///< bytes
  static constexpr std::size_t most = 1000;

  enum class Verdict { good, tooLong, tooMany };

  /// Counts a name at `position` in its element: 0 is the element's own name, then those of its
  /// attributes in their order. The position only saves time: neighbours have the same names in the
  /// same places.
  Verdict use(std::string_view name, std::size_t position);

  bool empty() const { return known.empty(); }

private:
  std::set<std::string, std::less<>> known;
  std::vector<std::string_view> last;  ///< by position; views into `known`
};
