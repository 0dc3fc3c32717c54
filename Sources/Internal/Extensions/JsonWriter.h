#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "AnyCodable.h"

namespace pelorino {

/// Writes compact JSON straight into one text, without a tree in between. The caller keeps begin
/// and end in balance; commas and colons come by themselves.
///
/// Texts that are no valid UTF-8 are written with U+FFFD in place of the bad bytes.
class JsonWriter final {
 public:
  JsonWriter() { out_.reserve(initialCapacity); }

  /// Goes on after `begun`, where a value may stand.
  explicit JsonWriter(std::string begun) : out_(std::move(begun)) {}

  void beginObject() { open('{'); }
  void key(std::string_view name);
  void endObject() { close('}'); }
  void beginList() { open('['); }
  void endList() { close(']'); }

  void null() { raw("null"); }
  void boolean(bool value) { raw(value ? "true" : "false"); }
  void integer(std::int64_t value);
  void unsignedInteger(std::uint64_t value);
  /// Throws PLRError for a number that is not finite: JSON has none.
  void floating(double value);
  void text(std::string_view value);
  /// Throws PLRError when it holds a number that is not finite or is nested too deep.
  void value(const AnyCodable& value, std::size_t depth = 0);

  /// Puts in a value that is JSON already.
  void raw(std::string_view json);

  [[nodiscard]] std::string take() { return std::move(out_); }

 private:
  static constexpr std::size_t initialCapacity = 256;

  void separate();
  void open(char bracket);
  void close(char bracket);
  void appendQuoted(std::string_view text);

  std::string out_;
  bool needsComma_ = false;
};

/// The same JSON, laid out in lines of two blanks of indentation a level. `json` is valid.
[[nodiscard]] std::string indentedJson(std::string_view json);

}  // namespace pelorino
