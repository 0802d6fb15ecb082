#include "platform/ControlProtocol.h"
#include "platform/System.h"

const std::filesystem::path& ControlProtocol::defaultDataRoot() {
  static const std::filesystem::path root =
      System::homeDirectory() / "Library/Application Support/Larkspur";
  return root;
}
