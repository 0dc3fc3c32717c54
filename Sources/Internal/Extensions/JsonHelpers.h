#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "AnyCodable.h"
#include "JsonCoding.h"

namespace pelorino {

// Between values and JSON texts. Any thread.

/// Compact JSON. Throws PLRError if JSON cannot hold the value.
template <class Value>
[[nodiscard]] std::string encodeJson(const Value& value) {
  JsonWriter json;
  encode(json, value);
  return json.take();
}

/// Reads a value. Throws PLRError if the text is not JSON, or does not fit the type.
template <class Value>
[[nodiscard]] Value decodeJson(std::string_view text) {
  Value value{};
  decode(JsonView(text), value);
  return value;
}

/// Compact JSON; absent if JSON cannot hold the value.
template <class Value>
[[nodiscard]] std::optional<std::string> toJSONData(const Value& value) {
  try {
    return encodeJson(value);
  } catch (const PLRError&) {
    return std::nullopt;
  }
}

/// Indented JSON for log lines; "Error in getting prettyJson" if JSON cannot hold the value.
template <class Value>
[[nodiscard]] std::string toPrettyJson(const Value& value) {
  const std::optional<std::string> json = toJSONData(value);
  return json ? indentedJson(*json) : "Error in getting prettyJson";
}

/// Reads a value; absent if the text is not JSON, or does not fit the type. Does not log.
template <class Value>
[[nodiscard]] std::optional<Value> from(std::string_view jsonString) {
  try {
    return decodeJson<Value>(jsonString);
  } catch (const PLRError&) {
    return std::nullopt;
  }
}

/// Reads an object. Empty if the text is another kind of JSON, or not JSON; the latter is logged.
[[nodiscard]] AnyCodable::Object toDictionary(std::string_view text);

/// Compact JSON of a dictionary; "Not a valid JSON" if JSON cannot hold it.
[[nodiscard]] std::string json(const AnyCodable::Object& dictionary);

}  // namespace pelorino
