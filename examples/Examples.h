#pragma once
// Example calls of every tool, for all who ask each tool something: tests, fuzzing, measurements.

#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

/// One call of a tool, about "Ann" and days between 2024-02-01 and 2024-03-17.
struct Example {
  std::string name;  ///< the tool's, and the form where it has several: "get_trend sleep"
  std::string tool;
  nlohmann::ordered_json arguments;  ///< a "workout_id" is "w_newest", which stands for a real one

  /// The arguments with `values` in the place of those that have the same names. A value whose name
  /// the example does not have is left out.
  nlohmann::ordered_json argumentsWith(const nlohmann::json& values) const;
};

/// The calls that `calls.json` holds. The functions throw std::runtime_error or the JSON library's
/// own exception when it cannot be read.
namespace Examples {

/// All of them, tool by tool in the order of the catalogue. No two have the same name.
const std::vector<Example>& all();

/// The first call of each tool that is not among `tools`: what is left for those who have questions
/// of their own to some of the tools.
std::vector<Example> ofToolsBut(const std::set<std::string>& tools);

}  // namespace Examples
