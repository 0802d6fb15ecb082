#pragma once
// What every reply must be, whatever was asked and whatever the data looked like.

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>

/// What is wrong with `line` as the one answer to `request`, see checkedReply; "" when nothing is.
std::string faultOfAnswer(const nlohmann::json& request, std::string_view line);

/// The reply that `line` is. Fails the test unless it is the one line that answers `request` as the
/// protocol wants it: one JSON object in valid UTF-8 before one line feed, the request's id, and
/// either an error of a known code with a message or, for a tool and for a resource, a result of
/// the right shape.
nlohmann::json checkedReply(const nlohmann::json& request, std::string_view line);

/// The one text of a tool's or a resource's reply; "" when the reply is an error.
std::string textOf(const nlohmann::json& reply);

/// The message of an error; "" when the reply is a result.
std::string messageOf(const nlohmann::json& reply);
