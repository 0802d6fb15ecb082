#include "import/Failure.h"
#include "import/member/Recipient.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace {

using testing::HasSubstr;

Member member(const std::string& id, const std::string& name) {
  Member made;
  made.id = id;
  made.name = name;
  return made;
}

Member paired(const std::string& id, const std::string& name) {
  Member made = member(id, name);
  made.devices.push_back({.token = "t",
                          .model = {},
                          .deviceName = {},
                          .pairedAt = 1,
                          .lastSeenAt = {},
                          .history = {},
                          .key = {}});
  return made;
}

const std::vector<Member> family{
    member("a-1", "Ann"), paired("b-2", "Ben"), member("m-3", "小美"), member("m-4", "小美")};

/// What the refusal says, in English.
std::string refusal(const std::string& name, const std::optional<std::string>& id) {
  try {
    recipient(family, name, id);
    return "none";
  } catch (const Failure& error) {
    return error.text(SummaryLang::en);
  }
}

TEST(Recipient, IsTheOneMemberOfThatName) {
  EXPECT_EQ(recipient(family, "Ann", std::nullopt), family[0]);
}

TEST(Recipient, IsNewWhenNobodyHasTheName) {
  EXPECT_EQ(recipient(family, "ann", std::nullopt), std::nullopt);
}

TEST(Recipient, IsTheMemberOfThatIDWhenNamesRepeat) {
  EXPECT_EQ(recipient(family, "小美", "m-4"), family[3]);
}

TEST(Recipient, IsNewWhenNobodyHasTheIDEvenIfTheNameRepeats) {
  EXPECT_EQ(recipient(family, "Ann", "a-9"), std::nullopt);
}

TEST(Recipient, IsRefusedWhenSeveralHaveTheName) {
  EXPECT_EQ(refusal("小美", std::nullopt),
            "the roster has 2 members named 小美; say which with --id: m-3, m-4");
}

TEST(Recipient, IsRefusedWhenTheIDIsSomebodyElses) {
  EXPECT_THAT(refusal("Ann", "m-3"), HasSubstr("the id m-3 is 小美's, not Ann's"));
}

TEST(Recipient, IsRefusedWhenNewAndAskedForLikeAnother) {
  EXPECT_THAT(refusal("Zoe", "Ann"), HasSubstr("Ann is another member's name"));
  EXPECT_THAT(refusal("m-3", std::nullopt), HasSubstr("m-3 is another member's id"));
  EXPECT_THAT(refusal("m-3", "z-1"), HasSubstr("m-3 is another member's id"));
  EXPECT_EQ(recipient(family, "Zoe", "Zoe"), std::nullopt);
}

TEST(Recipient, IsRefusedWhenNewWithBlanksAtTheNamesEnds) {
  for (const char* const name : {" Zoe", "Zoe\u00a0", "Ann "}) {
    EXPECT_THAT(refusal(name, std::nullopt), HasSubstr("no white space at its ends")) << name;
  }
  const std::vector<Member> older{member("o-1", "Olga ")};
  EXPECT_EQ(recipient(older, "Olga ", std::nullopt), older[0]);
}

TEST(Recipient, IsRefusedWhenPairedByNameAndByID) {
  EXPECT_THAT(refusal("Ben", std::nullopt), HasSubstr("Ben has a paired phone"));
  EXPECT_THAT(refusal("Ben", "b-2"), HasSubstr("Ben has a paired phone"));
}

/// Ann without a phone and Ben with one, whose databases are at these paths.
std::vector<Member> couple(const std::filesystem::path& anns, const std::filesystem::path& bens) {
  std::vector<Member> members{member("a-1", "Ann"), paired("b-2", "Ben")};
  members[0].dbPath = anns.string();
  members[1].dbPath = bens.string();
  return members;
}

/// What the refusal of an import for Ann says, in English.
std::string refusalOfAnn(const std::vector<Member>& members) {
  try {
    recipient(members, "Ann", std::nullopt);
    return "none";
  } catch (const Failure& error) {
    return error.text(SummaryLang::en);
  }
}

constexpr const char* refusalOfBen =
    "Ben has a paired phone, so the receiver writes that data and an import may not; an import "
    "under another name makes a member of its own";

TEST(Recipient, IsRefusedWithADatabaseThatAPairedMemberHasToo) {
  const TemporaryFolder folder;
  const std::filesystem::path bens = folder.write("ben/health.db", "Ben's");
  std::filesystem::create_directory(folder / "ann");
  std::filesystem::create_symlink(bens, folder / "ann/link.db");
  std::filesystem::create_hard_link(bens, folder / "ann/hard.db");
  std::filesystem::create_directory_symlink(folder / "ben", folder / "alias");

  for (const char* name : {"ben/health.db",
                           "ann/../ben/./health.db",
                           "ann/link.db",
                           "ann/hard.db",
                           "alias/health.db"}) {
    EXPECT_EQ(refusalOfAnn(couple(folder / name, bens)), refusalOfBen) << name;
  }
  folder.write("ann/health.db", "Ann's");
  EXPECT_EQ(refusalOfAnn(couple(folder / "ann/health.db", bens)), "none");
  EXPECT_EQ(refusalOfAnn(couple(folder / "ann/missing.db", bens)), "none");
}

TEST(Recipient, IsRefusedAlsoWhenThePairedMembersDatabaseIsYetToBeMade) {
  const TemporaryFolder folder;
  const std::filesystem::path bens = folder / "ben/health.db";
  std::filesystem::create_directories(folder / "ben");
  std::filesystem::create_symlink("ben/health.db", folder / "link.db");
  std::filesystem::create_directory_symlink(folder / "ben", folder / "alias");

  for (const char* name :
       {"ben/health.db", "ben/../ben/health.db", "alias/health.db", "link.db", "ben/HEALTH.db"}) {
    EXPECT_EQ(refusalOfAnn(couple(folder / name, bens)), refusalOfBen) << name;
  }
  EXPECT_EQ(refusalOfAnn(couple(folder / "ben/other.db", bens)), "none");
}

TEST(Recipient, MayShareADatabaseWithAMemberWhomNoPhoneServes) {
  const TemporaryFolder folder;
  std::vector<Member> members = couple(folder / "health.db", folder / "health.db");
  members[1].devices.clear();

  EXPECT_EQ(refusalOfAnn(members), "none");
}

}  // namespace
