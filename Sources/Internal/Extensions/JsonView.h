#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AnyCodable.h"

namespace pelorino {

/// A look at one value inside a JSON text that has been found valid. It borrows the text and builds
/// no tree, so that what nobody asks for costs no memory.
class JsonView final {
 public:
  /// Throws PLRError when the text is not exactly one JSON value in valid UTF-8.
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

  /// The value under a key, the last one where it stands twice, as most readers have it. Absent
  /// when there is none, and for a value that is no object.
  [[nodiscard]] std::optional<JsonView> find(std::string_view key) const;

  /// Calls `each` with every element of a list; nothing for other values.
  template <class Each>
  void forEachElement(Each&& each) const {
    if (!isList()) return;
    Scanner scanner(text_.substr(1));
    while (const auto element = scanner.next()) each(JsonView(Valid{}, *element));
  }

  /// Calls `each` with key and value of every member of an object; nothing for other values.
  template <class Each>
  void forEachMember(Each&& each) const {
    if (!isObject()) return;
    Scanner scanner(text_.substr(1));
    while (const auto key = scanner.next()) {
      each(unquoted(*key), JsonView(Valid{}, scanner.next().value()));
    }
  }

  /// The value itself. A number without a fraction is an integer, also when written 2.0 or 2e0; one
  /// beyond both integer ranges is floating. Throws PLRError when there are too many values, or
  /// some are nested deeper than maximumJsonDepth.
  [[nodiscard]] AnyCodable value() const;

 private:
  struct Valid {};
  JsonView(Valid, std::string_view text) : text_(text) {}

  /// Cuts valid JSON into its values, jumping over commas and colons, up to a closing bracket.
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

/// The members of an object, cut apart once for many questions. Borrows the text. Empty for a value
/// that is no object.
class JsonMembers final {
 public:
  explicit JsonMembers(const JsonView& object);

  /// As JsonView::find().
  [[nodiscard]] std::optional<JsonView> find(std::string_view key) const;

 private:
  std::vector<std::pair<std::string, JsonView>> members_;
};

/// Whether the text is one JSON object that JsonView can look into.
[[nodiscard]] bool isJsonObject(std::string_view text);

}  // namespace pelorino
