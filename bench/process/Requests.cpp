#include "bench/process/Requests.h"

#include <nlohmann/json.hpp>

#include <stdexcept>

using Json = nlohmann::json;

std::string Requests::line(std::string_view method, const Json& params) {
  return Json{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", params}}.dump() + "\n";
}

std::string Requests::initialize() {
  return line("initialize",
              {{"protocolVersion", "2024-11-05"},
               {"capabilities", Json::object()},
               {"clientInfo", {{"name", "bench"}, {"version", "1.0"}}}});
}

std::string Requests::ping() { return line("ping", Json::object()); }

std::string Requests::call(std::string_view tool, const Json& arguments) {
  return line("tools/call", {{"name", tool}, {"arguments", arguments}});
}

Json Requests::resultOf(std::string_view reply) {
  Json message = Json::parse(reply);
  if (const auto error = message.find("error"); error != message.end()) {
    throw std::runtime_error(error->at("message").get<std::string>());
  }
  return std::move(message.at("result"));
}
