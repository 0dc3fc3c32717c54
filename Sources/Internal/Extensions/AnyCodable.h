#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace pelorino {

/// The largest depth of lists and objects that is read or written. It limits the stack of
/// everything that walks a value.
inline constexpr std::size_t maximumJsonDepth = 64;

/// One JSON value of any kind. Immutable; any thread. Copies share lists and objects.
///
/// Values of different kinds are different: the integer 2 is not the number 2.0, and the integer 1
/// is not `true`.
class AnyCodable final {
 public:
  using List = std::vector<AnyCodable>;
  using Object = std::map<std::string, AnyCodable>;

  enum class Kind { null, boolean, integer, unsignedInteger, floating, text, list, object };

  AnyCodable() = default;
  AnyCodable(std::nullptr_t) {}
  AnyCodable(std::nullopt_t) {}
  // Only for bool itself: otherwise a pointer would become a bool.
  template <std::same_as<bool> Bool>
  AnyCodable(Bool value) : value_(value) {}
  template <std::signed_integral Integer>
  AnyCodable(Integer value) : value_(static_cast<std::int64_t>(value)) {}
  template <std::unsigned_integral Integer>
  requires(!std::same_as<Integer, bool>) AnyCodable(Integer value)
      : value_(static_cast<std::uint64_t>(value)) {}
  AnyCodable(float value) : value_(static_cast<double>(value)) {}
  AnyCodable(double value) : value_(value) {}
  AnyCodable(std::string value) : value_(std::move(value)) {}
  AnyCodable(std::string_view value) : value_(std::string(value)) {}
  AnyCodable(const char* value) : value_(std::string(value)) {}
  AnyCodable(List items) : AnyCodable(std::move(items), Origin::code) {}
  AnyCodable(Object members) : AnyCodable(std::move(members), Origin::code) {}
  template <class Value>
  AnyCodable(const std::optional<Value>& value)
      : AnyCodable(value ? AnyCodable(*value) : nullptr) {}

  /// Lists and objects that were read from a JSON text; see operator==.
  static AnyCodable decoded(List items) { return {std::move(items), Origin::decoding}; }
  static AnyCodable decoded(Object members) { return {std::move(members), Origin::decoding}; }

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(value_.index()); }
  [[nodiscard]] bool isNull() const { return kind() == Kind::null; }

  /// The value if it is of that kind; otherwise null. Valid as long as this object.
  [[nodiscard]] const bool* boolean() const { return std::get_if<bool>(&value_); }
  [[nodiscard]] const std::int64_t* integer() const { return std::get_if<std::int64_t>(&value_); }
  [[nodiscard]] const std::uint64_t* unsignedInteger() const {
    return std::get_if<std::uint64_t>(&value_);
  }
  [[nodiscard]] const double* floating() const { return std::get_if<double>(&value_); }
  [[nodiscard]] const std::string* text() const { return std::get_if<std::string>(&value_); }
  [[nodiscard]] const List* list() const;
  [[nodiscard]] const Object* object() const;

  /// The value for log lines: "nil" for null, a text as it is, a number with the fewest digits that
  /// give it back.
  [[nodiscard]] std::string description() const;
  /// "AnyCodable(...)" with the value inside. A text is in quotation marks.
  [[nodiscard]] std::string debugDescription() const;

  /// True for equal values of one kind. A list or object that was read from a JSON text equals
  /// nothing, not even itself, unless both sides are empty: only plain values of the backend's
  /// exclusions can match an argument.
  friend bool operator==(const AnyCodable& left, const AnyCodable& right);

 private:
  enum class Origin : bool { code, decoding };

  template <class Items>
  struct Container {
    std::shared_ptr<const Items> items;
    Origin origin;
    bool operator==(const Container& other) const {
      if (items->empty() && other.items->empty()) return true;
      return origin == Origin::code && other.origin == Origin::code && *items == *other.items;
    }
  };

  template <class Items>
  AnyCodable(Items items, Origin origin)
      : value_(Container<Items>{std::make_shared<const Items>(std::move(items)), origin}) {}

  void appendDebugText(std::string& out) const;

  std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string,
               Container<List>, Container<Object>>
      value_;
};

}  // namespace pelorino
