#pragma once
// One owner of a file descriptor.

#include <filesystem>
#include <type_traits>
#include <utility>

/// A file descriptor, or none. The destructor closes it and says nothing of a close that fails:
/// whoever must know that the bytes are on the disk syncs them before.
class Descriptor {
public:
  Descriptor() = default;

  /// Owns `number`, which the system has just given; a negative one is none.
  explicit Descriptor(int number) : number(number) {}

  /// Opens the file at `path` with `flags`, again as often as a signal comes in between; programs
  /// started later do not inherit it. A file that it makes is its owner's alone. None, with errno
  /// set, when the file cannot be opened.
  static Descriptor ofFile(const std::filesystem::path& path, int flags);

  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    Descriptor taken(std::move(other));
    std::swap(number, taken.number);
    return *this;
  }

  explicit operator bool() const { return number >= 0; }

  int get() const { return number; }  ///< negative for none

private:
  int number = -1;
};

static_assert(!std::is_copy_constructible_v<Descriptor> && !std::is_copy_assignable_v<Descriptor>);
static_assert(std::is_nothrow_move_constructible_v<Descriptor> &&
              std::is_nothrow_move_assignable_v<Descriptor>);
static_assert(!std::is_convertible_v<int, Descriptor> && !std::is_convertible_v<Descriptor, int>);
