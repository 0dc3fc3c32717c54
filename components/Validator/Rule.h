#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "AnyCodable.h"
#include "Label.h"
#include "Limits.h"
#include "Validator.h"

namespace pelorino {

/// The checks of one call, or of one entry of its dictionaries. All of them run and write their
/// messages before the verdict. Texts are repaired in place. Threads: the incomeQueue.
class Rule final {
 public:
  /// `method` is what messages call the operation; a constant.
  explicit Rule(std::string_view method) : method_(method) {}

  /// Cleans and cuts the text, which is no failure. An absent text stays absent.
  void bound(const Label& argument, std::string& value, std::size_t maximum) const;
  void bound(const Label& argument, std::optional<std::string>& value, std::size_t maximum) const;

  /// Cleans and cuts the text. Fails if it is empty then. For most texts.
  void text(const Label& argument, std::string& value, std::size_t maximum);

  /// The same for one of many texts, which its own label shows: `opening`, the clean text,
  /// `closing`.
  void namedText(std::string_view opening, std::string_view closing, std::string& value,
                 std::size_t maximum);

  /// A text or a table must have content.
  template <class Container>
  void notEmpty(const Label& argument, const Container& value) {
    passed_ &= Validator::notNullOrEmpty(method_, argument, value);
  }

  void inInterval(const Label& argument, std::int64_t value, Interval allowed);
  /// Not NaN and within the bounds.
  void inInterval(const Label& argument, double value, double min, double max);
  /// The cleaned text must have this length.
  void equalLength(const Label& argument, const std::string& value, std::size_t length);
  void validType(const Label& argument, const AnyCodable& value);

  /// For a check of the rule's own that has failed. Writes `message` as it is.
  void fail(std::string_view message);

  [[nodiscard]] std::string_view method() const { return method_; }

  /// True when no check has failed so far.
  [[nodiscard]] bool passed() const { return passed_; }

  /// The verdict: the repaired call, or nothing after the cancel message.
  template <class Call>
  [[nodiscard]] std::optional<Call> verdict(Call repaired) const {
    if (passed_) return repaired;
    cancel();
    return std::nullopt;
  }

 private:
  void cancel() const;

  std::string_view method_;
  bool passed_ = true;
};

}  // namespace pelorino
