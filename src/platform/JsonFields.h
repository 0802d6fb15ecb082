#pragma once
// Strict reading of records from JSON objects. Includes the whole JSON library: for sources, not
// headers.

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

/// A JSON value does not have the form of the record. The message names the key, never the value.
class DecodingError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

namespace JsonFields {

/// `text` parsed as JSON. Throws DecodingError when it is not valid JSON. The message gives the
/// line and quotes none of the text, which may be secret. A zero byte is an error too: the parser
/// would take it for the end.
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

/// `value` as a whole number; 7 and 7.0 are the same. `nullopt` for a fraction, a number outside
/// the range of int64 and any other JSON type.
inline std::optional<std::int64_t> wholeNumber(const nlohmann::json& value) {
  if (value.is_number_unsigned()) {
    const auto number = value.get<std::uint64_t>();
    if (number > static_cast<std::uint64_t>(INT64_MAX)) return std::nullopt;
    return static_cast<std::int64_t>(number);
  }
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (!value.is_number_float()) return std::nullopt;
  const auto number = value.get<double>();
  // -2^63 is exact as a double; 2^63 is the first double beyond the range.
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

/// `value` as a T: text, boolean, double, int64, a vector of Ts, a map from text to Ts, or a record
/// with a from_json. Throws DecodingError with `key` in its message for another JSON type.
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
      // The error of a record names one of its fields; the error of an enumerator names none.
      throw DecodingError(key + (std::is_enum_v<T> ? " " : ".") + error.what());
    }
  }
}

/// The T under `key` of `object`. Throws DecodingError when `object` is not an object, the key is
/// missing or the value is not a T.
template <typename T>
T required(const nlohmann::json& object, const std::string& key) {
  if (!object.is_object()) throw DecodingError(key + " is wanted of what is not an object");
  const auto found = object.find(key);
  if (found == object.end()) throw DecodingError(key + " is missing");
  return decoded<T>(*found, key);
}

/// The T under `key` of `object`; absent when the key is missing or its value is null. Throws like
/// `required`.
template <typename T>
std::optional<T> optional(const nlohmann::json& object, const std::string& key) {
  if (!object.is_object()) throw DecodingError(key + " is wanted of what is not an object");
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return std::nullopt;
  return decoded<T>(*found, key);
}

/// Sets `key` of `object` only when there is a value that JSON can represent: records never contain
/// null.
template <typename Json, typename T>
void setIfPresent(Json& object, const char* key, const std::optional<T>& value) {
  if constexpr (std::is_same_v<T, double>) {
    if (value && !std::isfinite(*value)) return;
  }
  if (value) object[key] = *value;
}

/// One field of a record and its JSON key.
template <typename Record, typename T>
struct Field {
  const char* key;
  T Record::*member;
};
template <typename Record, typename T>
Field(const char*, T Record::*) -> Field<Record, T>;

/// Reads every field of `fields`, a tuple of Fields, from `object`: optional fields like
/// `optional`, others like `required`.
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

/// Makes `object` a JSON object with the present fields of `fields`, in their order.
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

/// `value` as JSON; null when absent.
template <typename T>
nlohmann::json orNull(const std::optional<T>& value) {
  return value ? nlohmann::json(*value) : nlohmann::json(nullptr);
}

}  // namespace JsonFields
