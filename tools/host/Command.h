#pragma once

#include <boost/json.hpp>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "Arguments.h"
#include "Output.h"

namespace pelorino::host {

/// One command: samples of the arguments beside "op", and what to do with them. A field that is in
/// no sample is refused. The samples are valid arguments, for those who want to call every
/// operation; several samples show forms that exclude each other. The text of `op` lives as long as
/// the process, so answers may keep it.
struct Command {
  std::vector<boost::json::object> samples;
  std::function<void(std::string_view op, const Arguments& arguments)> run;
};

/// Commands by their "op".
using CommandTable = std::map<std::string_view, Command>;

/// `samples` are JSON objects.
inline Command command(std::initializer_list<std::string_view> samples,
                       std::function<void(std::string_view op, const Arguments&)> run) {
  Command made{{}, std::move(run)};
  for (const std::string_view sample : samples) {
    made.samples.push_back(boost::json::parse(sample).as_object());
  }
  return made;
}

inline Command command(std::initializer_list<std::string_view> samples,
                       void (*run)(const Arguments&)) {
  return command(samples, [run](std::string_view, const Arguments& arguments) { run(arguments); });
}

/// An operation without arguments and without an answer.
inline Command plain(void (*operation)() noexcept) {
  return {{{}}, [operation](std::string_view, const Arguments&) { operation(); }};
}

/// An operation whose one argument is a text.
inline Command withText(std::string_view label, void (*operation)(std::string_view) noexcept,
                        std::string_view sample = "text") {
  return {{{{label, sample}}},
          [=](std::string_view, const Arguments& arguments) { operation(arguments.text(label)); }};
}

/// An operation whose one argument is an integer.
inline Command withInteger(std::string_view label, void (*operation)(std::int64_t) noexcept) {
  return {{{{label, 3}}}, [=](std::string_view, const Arguments& arguments) {
            operation(arguments.integer(label));
          }};
}

/// An operation whose one argument is true or false.
inline Command withBoolean(std::string_view label, void (*operation)(bool) noexcept) {
  return {{{{label, true}}, {{label, false}}}, [=](std::string_view, const Arguments& arguments) {
            operation(arguments.boolean(label));
          }};
}

/// An operation that answers at once.
template <class Answer>
Command answering(Answer (*operation)()) {
  return {{{}},
          [operation](std::string_view op, const Arguments&) { writeResult(op, operation()); }};
}

/// An operation that answers by a handler.
template <class Handler>
Command asking(void (*operation)(Handler) noexcept) {
  return {{{}}, [operation](std::string_view op, const Arguments&) {
            operation([op](const auto& answer) { writeResult(op, answer); });
          }};
}

}  // namespace pelorino::host
