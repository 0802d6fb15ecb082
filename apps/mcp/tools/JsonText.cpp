#include "mcp/tools/JsonText.h"

#include <nlohmann/json.hpp>

std::string Tools::documentText(const nlohmann::json& document) {
  const std::string plain = document.dump();
  std::string text;
  text.reserve(plain.size() + plain.size() / 16);
  for (const char character : plain) {
    // In JSON a slash occurs only inside strings.
    if (character == '/') text += '\\';
    text += character;
  }
  return text;
}
