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

namespace pelorino {

/// One value of a user's card. The null marker is the value of a key that has been unset and not
/// been transmitted since.
class PeopleValueType final {
 public:
  using NullMarker = std::monostate;

  PeopleValueType() = default;
  // Constrained, so that a pointer (a string literal too) never turns into a bool.
  template <std::same_as<bool> Bool>
  PeopleValueType(Bool value) : value_(value) {}
  PeopleValueType(int value) : value_(std::int64_t{value}) {}
  PeopleValueType(std::int64_t value) : value_(value) {}
  PeopleValueType(double value) : value_(value) {}
  PeopleValueType(std::string value) : value_(std::move(value)) {}
  PeopleValueType(const char* value) : value_(std::string(value)) {}
  PeopleValueType(PLRGender value) : value_(value) {}

  /// Nothing for a list or an object.
  [[nodiscard]] static std::optional<PeopleValueType> from(const AnyCodable& json);
  [[nodiscard]] AnyCodable toAnyCodable() const;

  [[nodiscard]] bool isNull() const { return std::holds_alternative<NullMarker>(value_); }

  /// The text; absent for a value that is none.
  [[nodiscard]] std::optional<std::string> toString() const;
  /// An integer or a double; 0 for anything else. A double beyond the integers is cut to the
  /// nearest one.
  [[nodiscard]] double toDouble() const;
  [[nodiscard]] std::int64_t toInt() const;

  /// The value as a log line shows it: numbers in the fewest digits that read back.
  [[nodiscard]] std::string description() const { return toAnyCodable().description(); }

  /// The value, if it is a bool, std::int64_t, double, std::string or PLRGender as asked for; else
  /// null. Borrowed from this object.
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

/// The properties that a stored text holds. Values of no card type are dropped; a text that is no
/// JSON object gives none.
[[nodiscard]] PeopleProperties peopleProperties(std::string_view json);

/// The properties as compact JSON; "Not a valid JSON" for what JSON cannot hold.
[[nodiscard]] std::string peopleJson(const PeopleProperties& properties);

}  // namespace pelorino
