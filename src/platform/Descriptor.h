#pragma once
// The owner of a file descriptor.

#include <filesystem>
#include <type_traits>
#include <utility>

/// A file descriptor, or none. The destructor closes it and ignores errors of close. A caller that
/// needs the bytes on the disk must sync before.
class Descriptor {
public:
  Descriptor() = default;

  /// Owns `number`, which must be a new descriptor; a negative number means none.
  explicit Descriptor(int number) : number(number) {}

  /// Opens the file at `path` with `flags`, and retries after a signal. Programs started later do
  /// not inherit the descriptor. A new file is accessible to its owner only. Returns none and sets
  /// errno when the file cannot be opened.
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
