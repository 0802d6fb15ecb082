#include "platform/Mounts.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

namespace {

using std::filesystem::path;

/// One line of the system's list.
std::string line(const std::string& id, const std::string& parent, const std::string& place,
                 const std::string& device, const std::string& kind) {
  return id + " " + parent + " " + device + " / " + place + " rw,noatime shared:1 master:2 - " +
         kind + " source rw\n";
}

const std::string rootLine = line("1", "0", "/", "8:1", "ext4");

struct KindCase {
  std::string name;
  std::string device;
  std::string kind;
  bool local;
};

void PrintTo(const KindCase& test, std::ostream* stream) { *stream << test.name; }

class KindOfMount : public testing::TestWithParam<KindCase> {};

TEST_P(KindOfMount, TellsWhetherItIsLocal) {
  const Mounts mounts(line("1", "0", "/", GetParam().device, GetParam().kind));

  EXPECT_EQ(mounts[0], (Mount{"1", "0", "/", GetParam().local}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindOfMount,
                         testing::Values(KindCase{"Drive", "8:1", "ext4", true},
                                         KindCase{"UnknownKindOnADrive", "259:3", "newfs", true},
                                         KindCase{"Memory", "0:25", "tmpfs", true},
                                         KindCase{"Pool", "0:31", "btrfs", true},
                                         KindCase{"Layers", "0:40", "overlay", true},
                                         KindCase{"NetworkShare", "0:50", "nfs4", false},
                                         KindCase{"WindowsShare", "0:51", "cifs", false},
                                         KindCase{"Program", "0:52", "fuse.sshfs", false},
                                         KindCase{"ProgramWithADrive", "8:17", "fuseblk", false},
                                         KindCase{"MountedWhenTouched", "0:53", "autofs", false},
                                         KindCase{"UnknownKind", "0:54", "newfs", false}),
                         [](const auto& test) { return test.param.name; });

TEST(Mounts, PassesOverWhatIsNoMount) {
  const Mounts mounts("\nnothing\n1 0 8:1 / /place rw ext4 source rw\n" + rootLine);

  EXPECT_EQ(mounts[0].place, "/");
}

TEST(Mounts, ReadsBlanksInAPlace) {
  const Mounts mounts(line("2", "1", R"(/media/My\040Drive\134x)", "8:17", "ext4"));

  EXPECT_EQ(mounts[0].place, R"(/media/My Drive\x)");
}

/// A folder with "share", on which something is mounted that is not local, by the list.
class PathOverMounts : public testing::Test {
protected:
  PathOverMounts() { std::filesystem::create_directories(folder / "share/below"); }

  Mounts mounts() const {
    return Mounts(rootLine + line("2", "1", folder / "share", "0:50", "nfs4"));
  }

  TemporaryFolder folder;
};

TEST_F(PathOverMounts, LeadsToTheFolderOfItsFile) {
  folder.write("inner/file", "");
  for (const char* file : {"inner/file", "inner/missing", "inner/missing/file"}) {
    const Mounts::Place place = mounts().followed(folder / file);
    EXPECT_EQ(place.folder, folder / "inner") << file;
    EXPECT_EQ(place.mount, 0U);
    EXPECT_FALSE(place.beforeRemote);
  }
}

TEST_F(PathOverMounts, StopsBeforeWhatIsNotLocal) {
  for (const char* file : {"share/file", "share/below/file", "./share/below/../file"}) {
    const Mounts::Place place = mounts().followed(folder / file);
    EXPECT_EQ(place.folder, folder.path()) << file;
    EXPECT_TRUE(place.beforeRemote) << file;
  }
}

TEST_F(PathOverMounts, GoesOnIntoWhatMayBeTouched) {
  const Mounts::Place place = mounts().followed(folder / "share/below/file", 1);

  EXPECT_EQ(place.folder, folder / "share/below");
  EXPECT_EQ(place.mount, 1U);
  EXPECT_FALSE(place.beforeRemote);
}

TEST_F(PathOverMounts, FollowsLinks) {
  std::filesystem::create_directory(folder / "inner");
  std::filesystem::create_directory_symlink("share/below", folder / "relative");
  std::filesystem::create_directory_symlink(folder / "inner/missing", folder / "dangling");
  std::filesystem::create_directory_symlink("round", folder / "round");

  EXPECT_TRUE(mounts().followed(folder / "relative/file").beforeRemote);
  EXPECT_EQ(mounts().followed(folder / "dangling/file").folder, folder / "inner");
  EXPECT_EQ(mounts().followed(folder / "dangling/../file").folder, folder / "inner");
  EXPECT_EQ(mounts().followed(folder / "round/file").folder, folder.path());
}

TEST_F(PathOverMounts, LeadsToWhatWasMountedLast) {
  const std::string place = folder / "share";
  const std::string share = line("2", "1", place, "0:50", "nfs4");
  const std::string drive = line("3", "2", place, "8:17", "ext4");

  EXPECT_EQ(Mounts(rootLine + share + drive).followed(place + "/below/file").mount, 2U);
  // A mount below a folder that another one came to cover is out of sight.
  const std::string below = line("2", "1", place + "/below", "0:50", "nfs4");
  const std::string cover = line("3", "1", place, "8:17", "ext4");
  EXPECT_EQ(Mounts(rootLine + below + cover).followed(place + "/below/file").mount, 2U);
}

// A program whose root was changed sees no mount of "/", only those inside.
TEST_F(PathOverMounts, KnowsAShareInARootThatIsNoMount) {
  const Mounts inside(line("7", "3", "/proc", "0:5", "proc") +
                      line("2", "1", folder / "share", "0:50", "nfs4"));

  const Mounts::Place place = inside.followed(folder / "share/below/file");

  EXPECT_EQ(place.folder, folder.path());
  EXPECT_TRUE(place.beforeRemote);
  EXPECT_TRUE(inside.followed(folder / "file").mount.has_value());
}

TEST_F(PathOverMounts, TellsNoMountWithoutAList) {
  const Mounts::Place place = Mounts("").followed(folder / "share/below/file");

  EXPECT_EQ(place.folder, folder / "share/below");
  EXPECT_EQ(place.mount, std::nullopt);
  EXPECT_EQ(Mounts("").of(folder.path()), std::nullopt);
}

TEST_F(PathOverMounts, TellsTheMountOfWhatIsThere) {
  EXPECT_EQ(mounts().of(folder.path()), 0U);
  EXPECT_EQ(mounts().of(folder / "share/below"), 1U);
}

}  // namespace
