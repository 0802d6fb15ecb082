#pragma once
// Everything that can be asked of the server about one member.

#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

/// A question to the server, and a name under which its answer is found again.
struct Question {
  std::string name;  ///< "get_trend sleep"
  nlohmann::json request;
};

/// The call of a tool, without an id.
nlohmann::json toolCall(const std::string& tool, nlohmann::json arguments);

/// All example calls and the resource, about the member of that id. `workoutID` names the workout
/// whose heart rate is wanted.
std::vector<Question> questionsAbout(const std::string& member, const std::string& workoutID);

/// Questions by their names.
using Names = std::set<std::string>;

Names operator+(Names names, const Names& others);
Names operator-(Names names, const Names& others);

/// The names of all questions about a member.
const Names& allQuestions();

/// The names of the questions to one tool. Throws std::invalid_argument when there is none.
Names questionsTo(const std::string& tool);

/// Every method of the protocol but those two, and a notification.
std::vector<nlohmann::json> generalRequests();

/// `requests` as lines, each request with an id of its own, counted from 1; a notification stays
/// without.
std::vector<nlohmann::json> numbered(std::vector<nlohmann::json> requests);

/// `requests` as the input of a server.
std::string asLines(const std::vector<nlohmann::json>& requests);
