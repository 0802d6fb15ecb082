#include "mcp/tools/JsonText.h"

#include <nlohmann/json.hpp>

std::string Tools::documentText(const nlohmann::json& document) {
  const std::string plain = document.dump();
  std::string text;
  text.reserve(plain.size() + plain.size() / 16);
  for (const char character : plain) {
    // In JSON a slash stands inside texts only.
    if (character == '/') text += '\\';
    text += character;
  }
  return text;
}
