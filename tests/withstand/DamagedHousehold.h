#pragma once
// Two members, and damage to the file of one of them.

#include "support/Household.h"
#include "withstand/WholeConversation.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// "Ann" (person=ann), whose file a test damages, and "Ben" (person=ben), whose file stays whole.
/// Both begin with the same history of every kind of record, with workouts, a humidity reading and
/// sleep, in small pages, so that a table is a tree of several levels.
class DamagedHousehold {
public:
  /// Replies by the names of the questions.
  using Replies = std::map<std::string, nlohmann::json>;

  DamagedHousehold();

  TestDatabase& ann() { return *patient; }

  /// Gives Ann's file these bytes, and takes away what SQLite left beside the one before.
  void replaceAnn(const std::string& bytes) const;

  /// Asks everything about Ann, and after one of the questions, another one each time, also about
  /// Ben. Fails the test when a reply is not well formed or Ben's is not what it always is.
  Replies asked(int patienceMilliseconds = usualPatienceMilliseconds) const;

  /// The same with each tool in one of its forms, another one each time.
  Replies askedInShort() const;

  /// The bytes of both files at first.
  static const std::string& wholeFile();

  /// What is answered about Ann as long as nothing is damaged.
  static const Replies& wholeReplies();

  /// The identifier of the workout whose heart rate is asked for.
  static std::string workoutID();

private:
  Replies repliesTo(const std::vector<Question>& questions, int patienceMilliseconds) const;

  Household members;
  TestDatabase* patient;
  mutable std::size_t conversations = 0;
};

/// The error with which the question of that name fails when the store says `message`.
nlohmann::json storeError(std::string_view question, const std::string& message);

/// Fails the test unless list_persons names Ann without data, and Ben with his.
void expectAnnWithoutData(const DamagedHousehold::Replies& replies);

/// Fails the test unless the resource and all tools about Ann but list_persons answer an error with
/// exactly this message, which `opening` says is one of opening her file, and unless list_persons
/// names her without data.
void expectRefused(const DamagedHousehold::Replies& replies, std::string_view message,
                   bool opening = false);

/// Fails the test unless each reply is a result, or an error in the words, and with the code, that
/// the store has for a file that it cannot read.
void expectHonest(const DamagedHousehold::Replies& replies);
