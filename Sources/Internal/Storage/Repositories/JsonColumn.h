#pragma once

#include <optional>
#include <string>
#include <vector>

#include "JsonHelpers.h"
#include "SQLiteConvertible.h"

namespace pelorino {

/// The value as JSON text. If JSON cannot hold the value, the text of `defaultOption`; if it cannot
/// hold that either, nothing, which is stored as NULL.
template <class Value>
[[nodiscard]] std::optional<std::string> encodeOrDefault(const Value& value,
                                                         const Value& defaultOption) {
  auto text = toJSONData(value);
  return text ? text : toJSONData(defaultOption);
}

/// Lists are stored as JSON text. A text that cannot be decoded reads as an empty list.
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
