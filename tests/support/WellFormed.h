#pragma once
// The properties of every reply, for any request and any data.

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

/// The fault of `line` as the only answer to `request`, see checkedReply; "" when there is none.
std::string faultOfAnswer(const nlohmann::json& request, std::string_view line);

/// The reply in `line`. Fails the test unless it is the only line that answers `request` according
/// to the protocol: one JSON object in valid UTF-8 before one line feed, with the request's id. It
/// must have an error with a known code and a message or, for a tool and for a resource, a result
/// of the right shape.
nlohmann::json checkedReply(const nlohmann::json& request, std::string_view line);

/// The only text of a tool's or a resource's reply; "" when the reply is an error.
std::string textOf(const nlohmann::json& reply);

/// The message of an error; "" when the reply is a result.
std::string messageOf(const nlohmann::json& reply);
