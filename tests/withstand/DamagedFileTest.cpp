// Files that are not there, not whole, or not what they say they are.

#include "support/WellFormed.h"
#include "withstand/DamagedHousehold.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <random>
#include <string>

namespace {

constexpr std::size_t pageSize = 512;

TEST(DamagedFile, IsAnsweredRightWhileItIsWhole) {
  const DamagedHousehold household;

  EXPECT_EQ(household.asked(), DamagedHousehold::wholeReplies());

  for (const auto& [name, reply] : DamagedHousehold::wholeReplies()) {
    EXPECT_NE(textOf(reply), "") << name;
  }
}

TEST(DamagedFile, IsMissedByName) {
  DamagedHousehold household;
  std::filesystem::remove(household.ann().path());

  expectRefused(household.asked(), "库文件不存在:" + household.ann().path(), true);
  EXPECT_FALSE(std::filesystem::exists(household.ann().path()));
}

TEST(DamagedFile, IsMissedWithItsFolder) {
  DamagedHousehold household;
  const std::filesystem::path folder = household.ann().folder().path();
  std::filesystem::rename(folder, folder.string() + ".unplugged");

  expectRefused(household.asked(), "数据目录不可用(盘没挂载?):" + folder.string(), true);
  EXPECT_FALSE(std::filesystem::exists(folder));

  std::filesystem::rename(folder.string() + ".unplugged", folder);
}

TEST(DamagedFile, MayBeAFolder) {
  DamagedHousehold household;
  std::filesystem::remove(household.ann().path());
  std::filesystem::create_directory(household.ann().path());

  expectRefused(household.asked(), "打不开库:disk I/O error", true);
}

TEST(DamagedFile, MayBeSomethingElse) {
  const DamagedHousehold household;
  household.replaceAnn(std::string(4096, 'x'));

  expectRefused(household.asked(), "prepare 失败:file is not a database");
}

TEST(DamagedFile, HasNoTablesWhenItIsEmpty) {
  const DamagedHousehold household;
  household.replaceAnn("");

  const DamagedHousehold::Replies replies = household.asked();

  expectAnnWithoutData(replies);
  for (const auto& [name, reply] : replies) {
    if (name == "list_persons") continue;
    const std::string first = name.starts_with("get_workout") ? "workouts" : "records";
    EXPECT_EQ(reply.value("error", nlohmann::json()),
              storeError(name, "prepare 失败:no such table: " + first))
        << name;
  }
}

TEST(DamagedFile, IsRefusedWhereverItIsCut) {
  const DamagedHousehold household;
  const std::string& whole = DamagedHousehold::wholeFile();
  int cases = 0;
  for (std::size_t size = pageSize; size < whole.size(); size += pageSize) {
    SCOPED_TRACE("cut after " + std::to_string(size) + " bytes");
    household.replaceAnn(whole.substr(0, size));
    expectRefused(household.askedInShort(), "prepare 失败:database disk image is malformed");
    ++cases;
  }
  RecordProperty("cases", cases);
}

/// A number below `bound`. The library's distributions differ from system to system.
std::size_t below(std::mt19937_64& random, std::size_t bound) { return random() % bound; }

/// `file` with damage as a failing disk, a bad cable or a stray program does it.
std::string corrupted(std::string file, std::mt19937_64& random) {
  const std::size_t pages = file.size() / pageSize;
  const std::size_t page = below(random, pages) * pageSize;
  const std::size_t other = below(random, pages) * pageSize;
  switch (below(random, 6)) {
    case 0:  // single bits
      for (std::size_t count = 1 + below(random, 16); count > 0; --count) {
        char& byte = file[below(random, file.size())];
        byte = static_cast<char>(byte ^ (1 << below(random, 8)));
      }
      break;
    case 1:  // a run of other bytes
      for (std::size_t at = below(random, file.size()), end = at + 1 + below(random, pageSize);
           at < std::min(end, file.size());
           ++at) {
        file[at] = static_cast<char>(random());
      }
      break;
    case 2:  // a page that was never written
      std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(page), pageSize, '\0');
      break;
    case 3:  // a page in the place of another
      file.replace(page, pageSize, file.substr(other, pageSize));
      break;
    case 4:  // the first bytes of a page, which say what it holds
      for (std::size_t index = 0; index < 16; ++index) {
        file[page + index] = static_cast<char>(random());
      }
      break;
    default:  // the file's own header, behind its first words
      file[16 + below(random, 84)] = static_cast<char>(random());
      break;
  }
  return file;
}

/// Ten groups of a hundred, so that they can run beside each other.
class CorruptedFile : public testing::TestWithParam<int> {};

TEST_P(CorruptedFile, IsAnsweredOrRefusedInGoodForm) {
  const DamagedHousehold household;
  constexpr int each = 100;
  int refusals = 0;
  for (int number = 0; number < each; ++number) {
    const int seed = GetParam() * each + number;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937_64 random(static_cast<unsigned>(seed));
    household.replaceAnn(corrupted(DamagedHousehold::wholeFile(), random));

    const DamagedHousehold::Replies replies = household.askedInShort();

    expectHonest(replies);
    for (const auto& [name, reply] : replies) refusals += reply.contains("error") ? 1 : 0;
  }
  RecordProperty("refusals", refusals);
  EXPECT_GT(refusals, 0);
}

INSTANTIATE_TEST_SUITE_P(Seeds, CorruptedFile, testing::Range(0, 10));

}  // namespace
