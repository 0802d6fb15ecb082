#pragma once
// A client who checks what it is told about live sessions.

#include "support/ChildProcess.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <random>
#include <string>

/// A conversation with the built program about "Ann" (person=ann), whose database holds live
/// sessions and gets more of them all the time. Fails the test when a reply is an error or not well
/// formed, when what it counts is not a number of whole sessions, when its totals are not the sum
/// of their parts, or when less is counted than in an earlier reply.
class LiveConversation {
public:
  LiveConversation(const std::filesystem::path& dataRoot, std::uint64_t seed);

  /// Asks one question and checks the answer: all kinds in turn, the details by chance. What is
  /// given as `meanwhile` happens between the two.
  void ask(const std::function<void()>& meanwhile = {});

  /// Ends the conversation; fails the test when the program did not end well.
  void finish();

  std::int64_t calls() const { return asked; }

  /// Those of them that called a tool.
  std::int64_t toolCalls() const { return ofTools; }

  /// How often `meanwhile` was over before there was anything of the answer.
  std::int64_t underWay() const { return unanswered; }

private:
  using Json = nlohmann::json;

  std::string answer(Json request);
  std::string answerOf(const std::string& tool, Json arguments);
  void sawSessions(std::int64_t number, const std::string& where);

  void askPersons();
  void askOverview();
  void askResource();
  void askTrend();
  void askDay();
  void askWorkouts();
  void askHeartRate();
  void askComparison();
  void checkOverview(const std::string& text);

  ChildProcess program;
  std::mt19937_64 random;
  std::function<void()> interruption;  ///< of the next question
  std::int64_t asked = 0;
  std::int64_t ofTools = 0;
  std::int64_t unanswered = 0;
  std::int64_t sessions = 0;                  ///< the most that any reply has shown
  std::map<std::string, std::int64_t> onDay;  ///< the same for single days
  std::string workoutID;                      ///< of some workout that a list has shown
};
