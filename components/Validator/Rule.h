#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "AnyCodable.h"
#include "Label.h"

namespace pelorino {

/// The checks of one call, or of one entry of its dictionaries: all of them run, each writes its
/// message, and only then the verdict is taken.
class Rule final {
 public:
  /// `method` is what messages call the operation; a constant.
  explicit Rule(std::string_view method) : method_(method) {}

  /// Clean, cut, not empty: what most texts go through.
  [[nodiscard]] std::string text(const Label& argument, std::string value, std::size_t maximum);

  /// Cut alone, which is no failure.
  [[nodiscard]] std::string cut(const Label& argument, std::string value,
                                std::size_t maximum) const;

  void notEmpty(const Label& argument, const std::string& value);
  void inInterval(const Label& argument, std::int64_t value, std::int64_t min, std::int64_t max);
  /// Not NaN and within the bounds.
  void inInterval(const Label& argument, double value, double min, double max);
  void validType(const Label& argument, const AnyCodable& value);

  /// True when no check has failed so far.
  [[nodiscard]] bool passed() const { return passed_; }

  /// True when a check has failed; the cancel message is written then. The last word on a call.
  [[nodiscard]] bool rejects() const;

 private:
  std::string_view method_;
  bool passed_ = true;
};

}  // namespace pelorino
