#pragma once
// The requests that the server is measured with, a line each.

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

namespace Requests {

/// A request with id 1, with its line feed.
std::string line(std::string_view method, const nlohmann::json& params);

std::string initialize();
std::string ping();

/// The call of a tool.
std::string call(std::string_view tool, const nlohmann::json& arguments);

/// The result that `reply` carries. Throws std::runtime_error with the server's own words when it
/// is a refusal.
nlohmann::json resultOf(std::string_view reply);

}  // namespace Requests
