#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "JsonCoding.h"

namespace pelorino {

/// A decimal number, such as a price: 4.99 is exactly 4.99. Zero at first. In JSON it is a number.
class Decimal final {
 public:
  Decimal() = default;

  /// Absent if the text is not a finite JSON number.
  [[nodiscard]] static std::optional<Decimal> parse(std::string_view text);

  /// The number as it is written in JSON.
  [[nodiscard]] const std::string& text() const { return text_; }

  /// True if the two differ by less than 0.0001.
  [[nodiscard]] bool isNear(const Decimal& other) const;

 private:
  explicit Decimal(std::string text) : text_(std::move(text)) {}

  std::string text_ = "0";
};

void encode(JsonWriter& json, const Decimal& value);
void decode(const JsonView& json, Decimal& value);

}  // namespace pelorino
