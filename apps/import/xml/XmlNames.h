#pragma once
// The names of elements and attributes that a document has used.

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// Counts different names. The parser never forgets one, so that a document of ever new names would
/// take all memory there is; this is how it is told in time. An export has less than two hundred.
class XmlNames {
public:
  static constexpr std::size_t longest = 256;  ///< bytes
  static constexpr std::size_t most = 1000;

  enum class Verdict { good, tooLong, tooMany };

  /// A name that stands at `position` in its element: 0 is the element's own, then those of its
  /// attributes in their order. The position saves time and changes no verdict: neighbours have the
  /// same names in the same places.
  Verdict use(std::string_view name, std::size_t position);

  bool empty() const { return known.empty(); }

private:
  std::set<std::string, std::less<>> known;
  std::vector<std::string_view> last;  ///< by position, of the names in `known`
};
