#pragma once

#include <string_view>

namespace pelorino {

/// The name of an argument in a message: a fixed text, or fixed texts around a variable one. It is
/// put together only when a message is written. Borrows its texts.
struct Label {
  Label(const char* words) : before(words) {}  // NOLINT(google-explicit-constructor)
  Label(std::string_view opening, std::string_view varying, std::string_view closing)
      : before(opening), variable(varying), after(closing) {}

  std::string_view before;
  std::string_view variable;
  std::string_view after;
};

}  // namespace pelorino
