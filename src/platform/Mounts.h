#pragma once
// The mounted file systems of Linux, read from the kernel's list so that no file system is
// accessed.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One mounted file system.
struct Mount {
  std::string id;
  std::string parent;           ///< the id of the mount it is mounted on
  std::filesystem::path place;  ///< absolute
  bool local;                   ///< needs no network, no other machine and no other program

  bool operator==(const Mount&) const = default;
};

/// The mounts of a process. A mount is identified by its index in the list.
class Mounts {
public:
  /// `list` has the form of /proc/self/mountinfo; other lines are skipped.
  explicit Mounts(std::string_view list);

  /// The target of a path, as far as it can be resolved.
  struct Place {
    std::filesystem::path folder;      ///< the deepest existing folder of the path, without links
    std::optional<std::size_t> mount;  ///< the folder's mount; absent when the list has none
    bool beforeRemote;  ///< the path continues into a remote mount that was not accessed
  };

  /// Resolves the absolute `path` to the folder of the file that it names, following all links,
  /// also those to missing targets. Accesses no remote mount except `touchable`.
  Place followed(const std::filesystem::path& path,
                 std::optional<std::size_t> touchable = std::nullopt) const;

  /// The mount of the existing file or folder at the absolute `path`, whichever mounts are on the
  /// way; absent when the list has none.
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
