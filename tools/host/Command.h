#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "Output.h"

namespace pelorino::host {

/// One command: the fields that its line may have beside "op", and what it does. The text of `op`
/// lives as long as the process, so that answers may keep it.
struct Command {
  std::vector<std::string_view> labels;
  std::function<void(std::string_view op, const Arguments& arguments)> run;
};

/// Commands by their "op".
using CommandTable = std::map<std::string_view, Command>;

inline Command command(std::vector<std::string_view> labels, void (*run)(const Arguments&)) {
  return {std::move(labels),
          [run](std::string_view, const Arguments& arguments) { run(arguments); }};
}

/// An operation that takes nothing and answers nothing.
inline Command plain(void (*operation)() noexcept) {
  return {{}, [operation](std::string_view, const Arguments&) { operation(); }};
}

/// An operation whose one argument is a text.
inline Command withText(std::string_view label, void (*operation)(std::string_view) noexcept) {
  return {{label},
          [=](std::string_view, const Arguments& arguments) { operation(arguments.text(label)); }};
}

/// An operation whose one argument is an integer.
inline Command withInteger(std::string_view label, void (*operation)(std::int64_t) noexcept) {
  return {{label}, [=](std::string_view, const Arguments& arguments) {
            operation(arguments.integer(label));
          }};
}

/// An operation whose one argument is true or false.
inline Command withBoolean(std::string_view label, void (*operation)(bool) noexcept) {
  return {{label}, [=](std::string_view, const Arguments& arguments) {
            operation(arguments.boolean(label));
          }};
}

/// An operation that answers at once.
template <class Answer>
Command answering(Answer (*operation)()) {
  return {{}, [operation](std::string_view op, const Arguments&) { writeResult(op, operation()); }};
}

/// An operation that answers by a handler.
template <class Handler>
Command asking(void (*operation)(Handler) noexcept) {
  return {{}, [operation](std::string_view op, const Arguments&) {
            operation([op](const auto& answer) { writeResult(op, answer); });
          }};
}

}  // namespace pelorino::host
