#include "import/xml/Prolog.h"

namespace {

constexpr std::string_view commentStart = "<!--";
constexpr std::string_view doctypeStart = "<!DOCTYPE";
constexpr std::string_view rootStart = "<HealthData";

constexpr bool isBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

}  // namespace

std::string_view Prolog::passed(std::string_view bytes) {
  if (over()) return bytes;
  output.clear();
  std::size_t taken = 0;
  while (taken < bytes.size() && !over()) take(bytes[taken++]);
  return output.append(bytes.substr(taken));
}

void Prolog::take(char byte) {
  switch (state) {
    case State::between:
      if (byte == '<') {
        held = byte;
        state = State::markup;
      } else {
        output += byte;
      }
      break;
    case State::markup:
      held += byte;
      takeMarkup();
      break;
    case State::instruction:
    case State::comment: {
      output += byte;
      const bool comment = state == State::comment;
      if (byte == (comment ? '-' : '?')) {
        ++closers;
      } else {
        if (byte == '>' && closers >= (comment ? 2U : 1U)) state = State::between;
        closers = 0;
      }
      break;
    }
    case State::doctype:
      takeDoctype(byte);
      break;
    case State::over:
      break;
  }
}

void Prolog::takeMarkup() {
  if (held == doctypeStart) {
    blank(held);
    held.clear();
    state = State::doctype;
    return;
  }
  if (held != commentStart && (commentStart.starts_with(held) || doctypeStart.starts_with(held))) {
    return;
  }
  if (held == "<?") {
    state = State::instruction;
  } else if (held == commentStart) {
    state = State::comment;
  } else {
    state = State::over;
  }
  output += held;
  held.clear();
}

void Prolog::takeDoctype(char byte) {
  const bool mayBegin = lastInDoctype == '>' || lastInDoctype == ']';
  if (held.size() == rootStart.size() && (isBlank(byte) || byte == '>' || byte == '/')) {
    output.append(held) += byte;
    held.clear();
    state = State::over;
    return;
  }
  if (held.size() < rootStart.size() && byte == rootStart[held.size()] && mayBegin) {
    held += byte;
    return;
  }
  if (!held.empty()) {
    blank(held);
    lastInDoctype = held.back();
    held.clear();
    takeDoctype(byte);  // the byte may start the tag again
    return;
  }
  blank({&byte, 1});
  if (!isBlank(byte)) lastInDoctype = byte;
}

void Prolog::blank(std::string_view bytes) {
  for (const char byte : bytes) {
    const bool continuesCharacter = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    if (byte == '\n' || byte == '\r') {
      output += byte;
    } else if (!continuesCharacter) {
      output += ' ';
    }
  }
}
