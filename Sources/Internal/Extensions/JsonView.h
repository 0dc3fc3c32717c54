#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AnyCodable.h"

namespace pelorino {

/// One value inside a JSON text that has been checked. It borrows the text and builds no tree:
/// values that nobody asks for cost no memory.
class JsonView final {
 public:
  /// Checks the text. Throws PLRError if it is not exactly one JSON value in valid UTF-8.
  explicit JsonView(std::string_view text);

  /// The value's own text, without blanks around it.
  [[nodiscard]] std::string_view text() const { return text_; }

  [[nodiscard]] bool isNull() const { return text_.front() == 'n'; }
  [[nodiscard]] bool isText() const { return text_.front() == '"'; }
  [[nodiscard]] bool isNumber() const {
    return text_.front() == '-' || (text_.front() >= '0' && text_.front() <= '9');
  }
  [[nodiscard]] bool isList() const { return text_.front() == '['; }
  [[nodiscard]] bool isObject() const { return text_.front() == '{'; }

  /// The value of a key. If the key is there twice, the last one wins, as in most JSON readers.
  /// Absent if there is none, or if this is not an object.
  [[nodiscard]] std::optional<JsonView> find(std::string_view key) const;

  /// Calls `each` with every element of a list. Does nothing for other values.
  template <class Each>
  void forEachElement(Each&& each) const {
    if (!isList()) return;
    Scanner scanner(text_.substr(1));
    while (const auto element = scanner.next()) each(JsonView(Valid{}, *element));
  }

  /// Calls `each` with the key and the value of every member of an object. Does nothing for other
  /// values.
  template <class Each>
  void forEachMember(Each&& each) const {
    if (!isObject()) return;
    Scanner scanner(text_.substr(1));
    while (const auto key = scanner.next()) {
      each(unquoted(*key), JsonView(Valid{}, scanner.next().value()));
    }
  }

  /// Builds the value. A whole number becomes an integer, even if it is written 2.0 or 2e0; one
  /// that no 64-bit integer can hold becomes a double. Throws PLRError if there are too many
  /// values, or if one is nested deeper than maximumJsonDepth.
  [[nodiscard]] AnyCodable value() const;

 private:
  struct Valid {};  ///< Marks the constructor for a text that has been checked.
  JsonView(Valid, std::string_view text) : text_(text) {}

  /// Splits the inside of a valid list or object into keys and values, up to the closing bracket.
  class Scanner final {
   public:
    explicit Scanner(std::string_view text) : rest_(text) {}
    [[nodiscard]] std::optional<std::string_view> next();

   private:
    std::string_view rest_;
  };

  [[nodiscard]] static std::string unquoted(std::string_view quoted);

  std::string_view text_;
};

/// The members of an object, split once for many searches. Borrows the text. Empty if the value is
/// not an object.
class JsonMembers final {
 public:
  explicit JsonMembers(const JsonView& object);

  /// See JsonView::find().
  [[nodiscard]] std::optional<JsonView> find(std::string_view key) const;

 private:
  std::vector<std::pair<std::string, JsonView>> members_;
};

/// True if the text is one JSON object that JsonView accepts.
[[nodiscard]] bool isJsonObject(std::string_view text);

}  // namespace pelorino
