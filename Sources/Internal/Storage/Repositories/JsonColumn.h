#pragma once

#include <optional>
#include <string>
#include <vector>

#include "JsonHelpers.h"
#include "SQLiteConvertible.h"

namespace pelorino {

/// The value as JSON text, that of `defaultOption` where JSON cannot hold the value; absent, and so
/// NULL, where it cannot hold that either.
template <class Value>
[[nodiscard]] std::optional<std::string> encodeOrDefault(const Value& value,
                                                         const Value& defaultOption) {
  auto text = toJSONData(value);
  return text ? text : toJSONData(defaultOption);
}

/// Lists are held as JSON text. A text that does not decode is an empty list.
template <class Element>
struct SQLiteValueContertible<std::vector<Element>> {
  static std::optional<SQLiteValue> stored(const std::vector<Element>& field) {
    return encodeOrDefault(field, {});
  }
  static std::optional<std::vector<Element>> from(const Cursor& cursor, int at) {
    const auto text = cursor.text(at);
    if (!text) return std::nullopt;
    return pelorino::from<std::vector<Element>>(*text).value_or(std::vector<Element>());
  }
};

}  // namespace pelorino
