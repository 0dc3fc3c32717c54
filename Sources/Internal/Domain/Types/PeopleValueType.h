#pragma once

#include <pelorino/PLRGender.h>

#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "AnyCodable.h"
#include "JsonWriter.h"

namespace pelorino {

/// One value of a user's card. A key that was unset holds the null marker until that has been sent.
class PeopleValueType final {
 public:
  using NullMarker = std::monostate;

  PeopleValueType() = default;
  // Only for bool itself: otherwise a pointer would become a bool.
  template <std::same_as<bool> Bool>
  PeopleValueType(Bool value) : value_(value) {}
  PeopleValueType(int value) : value_(std::int64_t{value}) {}
  PeopleValueType(std::int64_t value) : value_(value) {}
  PeopleValueType(double value) : value_(value) {}
  PeopleValueType(std::string value) : value_(std::move(value)) {}
  PeopleValueType(const char* value) : value_(std::string(value)) {}
  PeopleValueType(PLRGender value) : value_(value) {}

  /// Absent for a list or an object.
  [[nodiscard]] static std::optional<PeopleValueType> from(const AnyCodable& json);
  [[nodiscard]] AnyCodable toAnyCodable() const;

  [[nodiscard]] bool isNull() const { return std::holds_alternative<NullMarker>(value_); }

  /// The text; absent if the value is not a text.
  [[nodiscard]] std::optional<std::string> toString() const;
  /// The number; 0 if the value is not a number. toInt() drops a fraction and limits a double to
  /// the range of integers.
  [[nodiscard]] double toDouble() const;
  [[nodiscard]] std::int64_t toInt() const;

  /// The value for log lines; see AnyCodable::description().
  [[nodiscard]] std::string description() const { return toAnyCodable().description(); }

  /// The value if it has this type: bool, std::int64_t, double, std::string or PLRGender; otherwise
  /// null. Valid as long as this object.
  template <class Kind>
  [[nodiscard]] const Kind* get() const {
    return std::get_if<Kind>(&value_);
  }

  /// Values of different types are never equal: 1 is not 1.0.
  [[nodiscard]] bool isEqual(const PeopleValueType& other) const { return value_ == other.value_; }

 private:
  std::variant<NullMarker, bool, std::int64_t, double, std::string, PLRGender> value_;
};

using PeopleProperties = std::map<std::string, PeopleValueType>;

/// Reads properties from stored JSON. Lists and objects are dropped. A text that is not a JSON
/// object gives no properties.
[[nodiscard]] PeopleProperties peopleProperties(std::string_view json);

/// Writes the value of an event. A whole number is written without a fraction, also a double.
void encode(JsonWriter& json, const PeopleValueType& value);

/// The properties as compact JSON; "Not a valid JSON" if JSON cannot hold them.
[[nodiscard]] std::string peopleJson(const PeopleProperties& properties);

}  // namespace pelorino
