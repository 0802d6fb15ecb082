#pragma once
// Strict reading of records from JSON objects. Includes the JSON library: for sources, not headers.

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

/// A JSON value is not the record it should be. The message names the key, never the value.
class DecodingError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

namespace JsonFields {

/// The JSON value that `text` holds. Throws DecodingError when it holds none; the message says
/// where, and quotes nothing of the text, which may be secret. A zero byte is an error too: the
/// parser alone would take it for the end.
inline nlohmann::json parsed(const std::string& text) {
  std::size_t wrong = text.find('\0');
  if (wrong == std::string::npos) {
    try {
      return nlohmann::json::parse(text);
    } catch (const nlohmann::json::exception& error) {
      const auto* syntax = dynamic_cast<const nlohmann::json::parse_error*>(&error);
      wrong = syntax == nullptr || syntax->byte == 0 ? 0 : syntax->byte - 1;
    }
  }
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(wrong, text.size()));
  const auto line = 1 + std::count(text.begin(), end, '\n');
  throw DecodingError("not JSON, line " + std::to_string(line));
}

/// The whole number that `value` is, 7 and 7.0 alike; `nullopt` for fractions, for numbers outside
/// the range of int64, and for all that is no number.
inline std::optional<std::int64_t> wholeNumber(const nlohmann::json& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (number > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
    return static_cast<std::int64_t>(number);
  }
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (!value.is_number_float()) return std::nullopt;
  const auto number = value.get<double>();
  // -2^63 is a double and 2^63 the first beyond the range.
  if (std::trunc(number) != number || number < -0x1p63 || number >= 0x1p63) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

template <typename T>
struct IsVector : std::false_type {};
template <typename T>
struct IsVector<std::vector<T>> : std::true_type {};
template <typename T>
struct IsMap : std::false_type {};
template <typename T>
struct IsMap<std::map<std::string, T>> : std::true_type {};
template <typename T>
struct IsOptional : std::false_type {};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type {};

/// `value` as a T: text, boolean, double, int64, a vector of Ts, a map of texts to Ts, or a record
/// that has a from_json. Throws DecodingError, naming `key`, when the JSON type is another.
template <typename T>
T decoded(const nlohmann::json& value, const std::string& key) {
  if constexpr (std::is_same_v<T, std::string>) {
    if (!value.is_string()) throw DecodingError(key + " is not a string");
    return value.get<std::string>();
  } else if constexpr (std::is_same_v<T, bool>) {
    if (!value.is_boolean()) throw DecodingError(key + " is not a boolean");
    return value.get<bool>();
  } else if constexpr (std::is_same_v<T, double>) {
    if (!value.is_number()) throw DecodingError(key + " is not a number");
    return value.get<double>();
  } else if constexpr (std::is_same_v<T, std::int64_t>) {
    const std::optional<std::int64_t> number = wholeNumber(value);
    if (!number) throw DecodingError(key + " is not an integer");
    return *number;
  } else if constexpr (IsVector<T>::value) {
    if (!value.is_array()) throw DecodingError(key + " is not an array");
    T elements;
    for (const nlohmann::json& element : value) {
      const std::string place = key + "[" + std::to_string(elements.size()) + "]";
      elements.push_back(decoded<typename T::value_type>(element, place));
    }
    return elements;
  } else if constexpr (IsMap<T>::value) {
    if (!value.is_object()) throw DecodingError(key + " is not an object");
    T elements;
    for (const auto& [name, element] : value.items()) {
      const std::string place = std::string(key).append(".").append(name);
      elements[name] = decoded<typename T::mapped_type>(element, place);
    }
    return elements;
  } else {
    try {
      return value.get<T>();
    } catch (const DecodingError& error) {
      // What is wrong with a record is told of one of its fields, with an enumerator of itself.
      throw DecodingError(key + (std::is_enum_v<T> ? " " : ".") + error.what());
    }
  }
}

/// The T under `key` of `object`. Throws DecodingError when `object` is no object, the key is
/// missing or the value is not a T.
template <typename T>
T required(const nlohmann::json& object, const std::string& key) {
  if (!object.is_object()) throw DecodingError(key + " is wanted of what is not an object");
  const auto found = object.find(key);
  if (found == object.end()) throw DecodingError(key + " is missing");
  return decoded<T>(*found, key);
}

/// The T under `key` of `object`, absent when the key is missing or null. Throws as `required`
/// does.
template <typename T>
std::optional<T> optional(const nlohmann::json& object, const std::string& key) {
  if (!object.is_object()) throw DecodingError(key + " is wanted of what is not an object");
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return std::nullopt;
  return decoded<T>(*found, key);
}

/// Sets `key` of `object` only when there is a value that JSON can carry: records never write null.
template <typename Json, typename T>
void setIfPresent(Json& object, const char* key, const std::optional<T>& value) {
  if constexpr (std::is_same_v<T, double>) {
    if (value && !std::isfinite(*value)) return;
  }
  if (value) object[key] = *value;
}

/// One field of a record and the key that it has in JSON.
template <typename Record, typename T>
struct Field {
  const char* key;
  T Record::*member;
};
template <typename Record, typename T>
Field(const char*, T Record::*) -> Field<Record, T>;

/// Reads every field of `fields`, a tuple of Fields, from `object`: an optional one as `optional`
/// does, any other as `required` does.
template <typename Record, typename Fields>
void read(const nlohmann::json& object, Record& record, const Fields& fields) {
  const auto readField = [&object, &record]<typename T>(const Field<Record, T>& field) {
    if constexpr (IsOptional<T>::value) {
      record.*field.member = optional<typename T::value_type>(object, field.key);
    } else {
      record.*field.member = required<T>(object, field.key);
    }
  };
  std::apply([&readField](const auto&... field) { (readField(field), ...); }, fields);
}

/// Makes `object` the JSON object of every field of `fields`, in their order, without those that
/// are absent.
template <typename Json, typename Record, typename Fields>
void write(Json& object, const Record& record, const Fields& fields) {
  object = Json::object();
  const auto writeField = [&object, &record]<typename T>(const Field<Record, T>& field) {
    if constexpr (IsOptional<T>::value) {
      setIfPresent(object, field.key, record.*field.member);
    } else {
      object[field.key] = record.*field.member;
    }
  };
  std::apply([&writeField](const auto&... field) { (writeField(field), ...); }, fields);
}

/// The value, or null.
template <typename T>
nlohmann::json orNull(const std::optional<T>& value) {
  return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}

}  // namespace JsonFields
