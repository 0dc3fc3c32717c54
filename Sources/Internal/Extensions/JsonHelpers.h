#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "AnyCodable.h"
#include "JsonCoding.h"

namespace pelorino {

/// Compact JSON. Throws PLRError for what JSON cannot hold.
template <class Value>
[[nodiscard]] std::string encodeJson(const Value& value) {
  JsonWriter json;
  encode(json, value);
  return json.take();
}

/// The value that the text holds. Throws PLRError when the text is no JSON of that shape.
template <class Value>
[[nodiscard]] Value decodeJson(std::string_view text) {
  Value value{};
  decode(JsonView(text), value);
  return value;
}

/// Compact JSON; absent for what JSON cannot hold.
template <class Value>
[[nodiscard]] std::optional<std::string> toJSONData(const Value& value) {
  try {
    return encodeJson(value);
  } catch (const PLRError&) {
    return std::nullopt;
  }
}

/// JSON for people to read; "Error in getting prettyJson" for what JSON cannot hold.
template <class Value>
[[nodiscard]] std::string toPrettyJson(const Value& value) {
  const std::optional<std::string> json = toJSONData(value);
  return json ? indentedJson(*json) : "Error in getting prettyJson";
}

/// The value that the text holds; absent when the text is no JSON of that shape. Says nothing.
template <class Value>
[[nodiscard]] std::optional<Value> from(std::string_view jsonString) {
  try {
    return decodeJson<Value>(jsonString);
  } catch (const PLRError&) {
    return std::nullopt;
  }
}

/// The object that the text holds. Empty for other JSON, and for a text that is no JSON, which is
/// logged.
[[nodiscard]] AnyCodable::Object toDictionary(std::string_view text);

/// Compact JSON of a dictionary; "Not a valid JSON" for what JSON cannot hold.
[[nodiscard]] std::string json(const AnyCodable::Object& dictionary);

}  // namespace pelorino
