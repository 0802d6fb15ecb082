#include "platform/Descriptor.h"
#include "platform/Files.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <utility>

namespace {

bool isOpen(int number) { return fcntl(number, F_GETFD) != -1; }

Descriptor openNull() { return Descriptor::ofFile("/dev/null", O_RDONLY); }

TEST(Descriptor, IsClosedWithItsOwner) {
  int number = -1;
  {
    const Descriptor file = openNull();
    number = file.get();
    EXPECT_TRUE(file);
    EXPECT_TRUE(isOpen(number));
  }
  EXPECT_FALSE(isOpen(number));
}

TEST(Descriptor, GoesFromOneOwnerToAnother) {
  Descriptor first = openNull();
  const int number = first.get();

  const Descriptor second(std::move(first));

  EXPECT_EQ(second.get(), number);
  EXPECT_TRUE(isOpen(number));
}

TEST(Descriptor, IsClosedWhenItsOwnerTakesAnother) {
  Descriptor owner = openNull();
  const int first = owner.get();
  Descriptor other = openNull();
  const int second = other.get();

  owner = std::move(other);

  EXPECT_EQ(owner.get(), second);
  EXPECT_FALSE(isOpen(first));
  EXPECT_TRUE(isOpen(second));

  owner = Descriptor();
  EXPECT_FALSE(owner);
  EXPECT_FALSE(isOpen(second));
}

TEST(Descriptor, IsNoneForAFileThatCannotBeOpened) {
  const TemporaryFolder folder;

  const Descriptor missing = Descriptor::ofFile(folder / "missing", O_RDONLY);

  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(missing);
  EXPECT_LT(missing.get(), 0);
}

TEST(Descriptor, OfANewFileIsItsOwnersAloneAndNotInherited) {
  const TemporaryFolder folder;
  const mode_t before = umask(0);

  const Descriptor made = Descriptor::ofFile(folder / "new", O_WRONLY | O_CREAT | O_EXCL);

  umask(before);
  EXPECT_EQ(std::filesystem::status(folder / "new").permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
  EXPECT_EQ(fcntl(made.get(), F_GETFD), FD_CLOEXEC);
}

}  // namespace
