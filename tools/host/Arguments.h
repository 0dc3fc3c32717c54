#pragma once

#include <boost/json.hpp>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino::host {

/// What is wrong with a command line, in words for its author.
class CommandError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Throws the CommandError of a field that is not `kind`, such as "a text".
[[noreturn]] void refuse(std::string_view name, std::string_view kind);

/// Typed access to the fields of a JSON object. A missing field, or one of another kind, throws
/// CommandError; the `maybe` forms treat null and a missing field as absent. Borrows the object.
class Arguments final {
 public:
  explicit Arguments(const boost::json::object& object) : object_(&object) {}

  /// Throws CommandError for a field that is none of these.
  void allowOnly(std::span<const std::string_view> names) const;
  void allowOnly(std::initializer_list<std::string_view> names) const {
    allowOnly(std::span(names.begin(), names.size()));
  }

  [[nodiscard]] bool has(std::string_view name) const { return find(name) != nullptr; }

  [[nodiscard]] std::string text(std::string_view name) const;
  [[nodiscard]] std::int64_t integer(std::string_view name) const;
  [[nodiscard]] double number(std::string_view name) const;
  [[nodiscard]] bool boolean(std::string_view name) const;
  [[nodiscard]] Arguments object(std::string_view name) const;
  /// An object whose values are integers.
  [[nodiscard]] std::map<std::string, std::int64_t> integers(std::string_view name) const;

  [[nodiscard]] std::optional<std::string> maybeText(std::string_view name) const;
  [[nodiscard]] std::optional<std::int64_t> maybeInteger(std::string_view name) const;
  [[nodiscard]] std::optional<std::vector<std::string>> maybeTexts(std::string_view name) const;
  [[nodiscard]] std::optional<Arguments> maybeObject(std::string_view name) const;
  /// A list of objects; an absent one is empty.
  [[nodiscard]] std::vector<Arguments> maybeObjects(std::string_view name) const;

  /// Calls `use` with the number, text or boolean of that name, in the type in which it is written.
  template <class Use>
  void scalar(std::string_view name, Use&& use) const {
    const boost::json::value& value = need(name);
    switch (value.kind()) {
      case boost::json::kind::bool_:
        return use(value.get_bool());
      case boost::json::kind::int64:
        return use(value.get_int64());
      case boost::json::kind::uint64:
        return use(value.get_uint64());
      case boost::json::kind::double_:
        return use(value.get_double());
      case boost::json::kind::string:
        return use(std::string_view(value.get_string()));
      default:
        refuse(name, "a number, a text or a boolean");
    }
  }

  [[nodiscard]] const boost::json::object& fields() const { return *object_; }

 private:
  const boost::json::value* find(std::string_view name) const;
  const boost::json::value& need(std::string_view name) const;

  const boost::json::object* object_;
};

}  // namespace pelorino::host
