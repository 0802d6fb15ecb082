#include "platform/UTF8.h"

#include <cstdint>

namespace {

/// What a lead byte announces: how many bytes follow and the range of the first of them, which is
/// where overlong forms, surrogates and code points above U+10FFFF are told apart.
struct Lead {
  std::size_t following;
  std::uint8_t lowest;
  std::uint8_t highest;
};

/// `following` is 0 for a byte that begins no character of several bytes.
constexpr Lead leadOf(std::uint8_t byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {0, 0, 0};
}

}  // namespace

UTF8::Run UTF8::runAt(std::string_view bytes) {
  const auto byteAt = [bytes](std::size_t index) {
    return static_cast<std::uint8_t>(bytes[index]);
  };
  if (byteAt(0) < 0x80) return {1, Form::whole};
  const Lead lead = leadOf(byteAt(0));
  if (lead.following == 0) return {1, Form::illFormed};
  for (std::size_t index = 1; index <= lead.following; ++index) {
    if (index == bytes.size()) return {index, Form::cut};
    const std::uint8_t lowest = index == 1 ? lead.lowest : 0x80;
    const std::uint8_t highest = index == 1 ? lead.highest : 0xBF;
    if (byteAt(index) < lowest || byteAt(index) > highest) return {index, Form::illFormed};
  }
  return {lead.following + 1, Form::whole};
}
