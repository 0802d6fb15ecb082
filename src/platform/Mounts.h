#pragma once
// Which file systems Linux has mounted where, so that nobody has to touch one to know it.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One mounted file system.
struct Mount {
  std::string id;
  std::string parent;           ///< the id of the mount that it was mounted on
  std::filesystem::path place;  ///< absolute
  bool local;                   ///< answers without a network, another machine or another program

  bool operator==(const Mount&) const = default;
};

/// The mounts of a process. A mount is named by its number in the list.
class Mounts {
public:
  /// `list` is in the form of /proc/self/mountinfo; lines that are not are passed over.
  explicit Mounts(std::string_view list);

  /// Where a path leads, as far as that can be seen.
  struct Place {
    std::filesystem::path folder;  ///< the deepest folder on the way that is there, free of links
    std::optional<std::size_t> mount;  ///< that it lies on; absent when the list does not tell
    bool beforeRemote;  ///< the way goes on into a mount that is not local and was not touched
  };

  /// Follows the absolute `path` to the folder of the file that it names, links and all; a link to
  /// what is not there is followed too. No mount is touched that is not local, except `touchable`.
  Place followed(const std::filesystem::path& path,
                 std::optional<std::size_t> touchable = std::nullopt) const;

  /// The mount that the existing file or folder at the absolute `path` lies on, whichever mounts
  /// lie on the way; absent when the list does not tell.
  std::optional<std::size_t> of(const std::filesystem::path& path) const;

  const Mount& operator[](std::size_t number) const { return mounts[number]; }

private:
  std::optional<std::size_t> topOfRoot() const;
  std::optional<std::size_t> covering(const std::filesystem::path& place,
                                      std::optional<std::size_t> below) const;
  std::optional<std::size_t> holding(const std::filesystem::path& folder) const;

  std::vector<Mount> mounts;
  std::optional<std::size_t> root;
};
