#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "AnyCodable.h"

namespace pelorino {

/// Writes compact JSON directly into one text. The caller must balance begin and end; the writer
/// adds commas and colons. Bytes of a text that are not valid UTF-8 are replaced by U+FFFD.
///
/// Threads: one at a time.
/// Errors:  throws PLRError; the text is then useless.
class JsonWriter final {
 public:
  JsonWriter() { out_.reserve(initialCapacity); }

  /// Continues the text `begun`, which must end where a value may begin.
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
  /// Throws PLRError if the number is not finite: JSON has no such numbers.
  void floating(double value);
  void text(std::string_view value);
  /// Throws PLRError if it contains a number that is not finite, or if it is nested too deep.
  void value(const AnyCodable& value, std::size_t depth = 0);

  /// Writes a text that is JSON already, without a check.
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

/// The same JSON in lines, indented by two blanks for each level. `json` must be valid.
[[nodiscard]] std::string indentedJson(std::string_view json);

}  // namespace pelorino
