#pragma once
// The requests for measuring the server, one line each.

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace Requests {

/// A request with id 1, with its line feed.
std::string line(std::string_view method, const nlohmann::json& params);

std::string initialize();
std::string ping();

/// A call of a tool.
std::string call(std::string_view tool, const nlohmann::json& arguments);

/// The result in `reply`. Throws std::runtime_error with the server's message when it is an error.
nlohmann::json resultOf(std::string_view reply);

}  // namespace Requests
