#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRNumber.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

/// The parameters of one custom event, one value for each key.
///
/// Keys have at most 32 characters and texts at most 255. `customEvent` cuts longer ones. It drops
/// a parameter with an empty key, an empty text, or a number that is not finite. The backend's
/// configuration limits the number of parameters; the default is 20. When the limit is reached,
/// `add` writes a log line and changes nothing, not even the value of a known key.
///
/// Threads: one at a time; there is no lock. `customEvent` copies it.
class PLR_EXPORT PLRCustomEventParameters {
 public:
  using Value = std::variant<bool, std::int64_t, double, std::string>;

  /// Takes any integer type, `bool`, `float`, `double` or text; a string literal is a text. An
  /// integer above 9223372036854775807 becomes a `double`. A known key gets the new value.
  template <class T>
  requires std::is_arithmetic_v<T>
  void add(std::string_view key, T value) {
    std::visit([&](auto number) { addParameter(key, number); }, PLRNumberOf(value));
  }
  void add(std::string_view key, std::string_view value);
  void add(std::string_view key, const char* value) { add(key, text(value)); }
  void add(std::string_view key, const std::string& value) { add(key, std::string_view(value)); }

  void addBool(std::string_view key, bool value) { add(key, value); }
  void addInt(std::string_view key, std::int64_t value) { add(key, value); }
  void addString(std::string_view key, std::string_view value) { add(key, value); }
  void addDouble(std::string_view key, double value) { add(key, value); }

  /// Everything added so far, in the order of the keys.
  [[nodiscard]] const std::map<std::string, Value>& getAllParameters() const { return dictionary; }

  /// One line "key: <key> value: <value>" for each parameter, joined by line feeds.
  [[nodiscard]] std::string description() const;

 private:
  static std::string_view text(const char* value) { return value ? value : std::string_view(); }

  void addParameter(std::string_view key, Value value);

  std::map<std::string, Value> dictionary;
};
