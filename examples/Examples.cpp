#include "examples/Examples.h"
#include "platform/Files.h"

#include <optional>
#include <stdexcept>

nlohmann::ordered_json Example::argumentsWith(const nlohmann::json& values) const {
  nlohmann::ordered_json changed = arguments;
  for (const auto& [key, value] : values.items()) {
    if (changed.contains(key)) changed[key] = value;
  }
  return changed;
}

namespace {

std::vector<Example> readExamples() {
  const std::optional<std::string> text = fileContents(LARKSPUR_EXAMPLES);
  if (!text) throw std::runtime_error("cannot read " LARKSPUR_EXAMPLES);
  std::vector<Example> examples;
  // Ordered, because the first call of a tool is its first in the file.
  for (const auto& row : nlohmann::ordered_json::parse(*text)) {
    for (const auto& [name, arguments] : row.at("calls").items()) {
      examples.push_back({name, row.at("tool"), arguments});
    }
  }
  return examples;
}

}  // namespace

const std::vector<Example>& Examples::all() {
  static const std::vector<Example> examples = readExamples();
  return examples;
}

std::vector<Example> Examples::ofToolsBut(const std::set<std::string>& tools) {
  std::set<std::string> seen = tools;
  std::vector<Example> first;
  for (const Example& example : all()) {
    if (seen.insert(example.tool).second) first.push_back(example);
  }
  return first;
}
