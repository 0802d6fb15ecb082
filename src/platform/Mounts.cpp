#include "platform/Mounts.h"

#include <algorithm>
#include <array>
#include <deque>
#include <system_error>
#include <utility>

namespace {

using std::filesystem::path;

/// Removes the first word of `line` and returns it.
std::string_view takeWord(std::string_view& line) {
  const std::string_view word = line.substr(0, line.find(' '));
  line.remove_prefix(std::min(line.size(), word.size() + 1));
  return word;
}

bool isOctal(char character) { return character >= '0' && character <= '7'; }

/// `word` with its escapes decoded: blanks and backslashes are written as "\040" and the like.
std::string unescaped(std::string_view word) {
  std::string text;
  for (std::size_t index = 0; index < word.size(); ++index) {
    const std::string_view digits = word.substr(index + 1, 3);
    if (word[index] == '\\' && digits.size() == 3 && std::ranges::all_of(digits, isOctal)) {
      const int code = (digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0');
      text += static_cast<char>(code);
      index += 3;
    } else {
      text += word[index];
    }
  }
  return text;
}

/// Whether a file system of `kind` on `device` is in this machine. An unknown kind without a device
/// counts as remote: not accessing it costs little.
bool isLocal(std::string_view device, std::string_view kind) {
  // User-space programs serve these, even from local drives.
  if (kind.starts_with("fuse")) return false;
  static constexpr std::array<std::string_view, 9> withoutDevice{
      "tmpfs", "ramfs", "rootfs", "devtmpfs", "overlay", "btrfs", "zfs", "bcachefs", "ecryptfs"};
  return !device.starts_with("0:") || std::ranges::find(withoutDevice, kind) != withoutDevice.end();
}

/// "36 35 98:0 /folder /place rw,noatime master:1 - ext4 /dev/sda rw"
std::optional<Mount> mountIn(std::string_view line) {
  Mount mount;
  mount.id = takeWord(line);
  mount.parent = takeWord(line);
  const std::string_view device = takeWord(line);
  takeWord(line);
  mount.place = unescaped(takeWord(line));
  while (!line.empty() && takeWord(line) != "-") {
  }
  const std::string_view kind = takeWord(line);
  if (kind.empty()) return std::nullopt;
  mount.local = isLocal(device, kind);
  return mount;
}

std::deque<path> partsOf(const path& whole) {
  const path relative = whole.relative_path();
  return {relative.begin(), relative.end()};
}

}  // namespace

Mounts::Mounts(std::string_view list) {
  while (!list.empty()) {
    const std::string_view line = list.substr(0, list.find('\n'));
    list.remove_prefix(std::min(list.size(), line.size() + 1));
    if (std::optional<Mount> mount = mountIn(line)) mounts.push_back(std::move(*mount));
  }
  root = topOfRoot();
  if (root || mounts.empty()) return;
  // When the root is not a mount itself, the list starts with the mounts inside it.
  const std::vector<Mount> listed = mounts;
  for (Mount& mount : mounts) {
    if (std::ranges::find(listed, mount.parent, &Mount::id) == listed.end()) mount.parent.clear();
  }
  root = mounts.size();
  mounts.push_back({.id = "", .parent = "", .place = "/", .local = true});
}

/// The visible mount at "/": the mount there whose parent is not in the list, or the mount that
/// covers it.
std::optional<std::size_t> Mounts::topOfRoot() const {
  for (std::size_t number = 0; number < mounts.size(); ++number) {
    const Mount& mount = mounts[number];
    if (mount.place != "/") continue;
    const bool lowest = mount.id == mount.parent ||
                        std::ranges::find(mounts, mount.parent, &Mount::id) == mounts.end();
    if (lowest) return covering("/", number);
  }
  return std::nullopt;
}

/// The visible mount at `place` within `below`: the topmost of those mounted on each other there.
std::optional<std::size_t> Mounts::covering(const path& place,
                                            std::optional<std::size_t> below) const {
  // At most one step per mount, so a list with a cycle cannot loop.
  for (std::size_t times = 0; below && times < mounts.size(); ++times) {
    const auto upon = std::ranges::find_if(mounts, [&](const Mount& mount) {
      return mount.parent == mounts[*below].id && mount.id != mount.parent && mount.place == place;
    });
    if (upon == mounts.end()) break;
    below = static_cast<std::size_t>(upon - mounts.begin());
  }
  return below;
}

/// The mount that contains `folder`, a path without links.
std::optional<std::size_t> Mounts::holding(const path& folder) const {
  std::optional<std::size_t> mount = root;
  path walked = "/";
  for (const path& part : folder.relative_path()) {
    walked /= part;
    mount = covering(walked, mount);
  }
  return mount;
}

Mounts::Place Mounts::followed(const path& whole, std::optional<std::size_t> touchable) const {
  constexpr int mostLinks = 40;  // the system's own limit
  int links = 0;
  Place place{"/", root, false};
  std::deque<path> parts = partsOf(whole);
  while (!parts.empty()) {
    const path part = std::exchange(parts.front(), path());
    parts.pop_front();
    if (part.empty() || part == ".") continue;
    if (part == "..") {
      place.folder = place.folder.parent_path();
      place.mount = holding(place.folder);
      continue;
    }
    const path next = place.folder / part;
    const std::optional<std::size_t> mount = covering(next, place.mount);
    if (mount && !mounts[*mount].local && mount != touchable) {
      place.beforeRemote = true;
      break;
    }
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::symlink_status(next, error);
    if (std::filesystem::is_symlink(status)) {
      const path target = std::filesystem::read_symlink(next, error);
      if (error || ++links > mostLinks) break;
      if (target.is_absolute()) place = {"/", root, false};
      const std::deque<path> further = partsOf(target);
      parts.insert(parts.begin(), further.begin(), further.end());
      continue;
    }
    // The last part names the file, which may be missing. Folders may be missing too and appear
    // later.
    if (parts.empty() || !std::filesystem::is_directory(status)) break;
    place.folder = next;
    place.mount = mount;
  }
  return place;
}

std::optional<std::size_t> Mounts::of(const path& whole) const {
  std::error_code error;
  const path resolved = std::filesystem::weakly_canonical(whole, error);
  return error ? std::nullopt : holding(resolved);
}
