#include "StoredEvents.h"

#include <boost/json.hpp>
#include <charconv>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "Summary.h"

namespace pelorino::backend {

namespace json = boost::json;

namespace {

constexpr std::string_view head = "INFO Create a new event: \n";

std::int64_t numberOf(std::string_view text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// One field a line, as "\t name: value"; nested fields have more tabs.
EventMark markOf(std::string_view textForm) {
  EventMark mark;
  while (!textForm.empty()) {
    const std::string_view line = textForm.substr(0, textForm.find('\n'));
    textForm.remove_prefix(std::min(line.size() + 1, textForm.size()));
    const std::size_t colon = line.find(": ");
    if (!line.starts_with("\t ") || colon == std::string_view::npos) continue;
    const std::string_view name = line.substr(2, colon - 2);
    const std::string_view value = line.substr(colon + 2);
    if (name == "code") mark.code = value;
    if (name == "timestamp") mark.timestamp = numberOf(value);
    if (name == "sessionId") mark.sessionId = numberOf(value);
    if (name == "level") mark.level = numberOf(value);
  }
  return mark;
}

}  // namespace

EventMark markOf(const json::object& event) {
  return {textOf(event, "code"), integerOf(event, "timestamp"), integerOf(event, "sessionId"),
          integerOf(event, "level")};
}

EventMarks readStoredEvents(const std::string& hostOutput) {
  std::ifstream lines(hostOutput);
  if (!lines) throw std::runtime_error("cannot read " + hostOutput);
  EventMarks marks;
  for (std::string line; std::getline(lines, line);) {
    boost::system::error_code error;
    const json::value value = json::parse(line, error);
    if (error || !value.is_object()) continue;  // The last line may be half written.
    const std::string log = textOf(value.get_object(), "log");
    if (log.starts_with(head)) ++marks[markOf(std::string_view(log).substr(head.size()))];
  }
  return marks;
}

}  // namespace pelorino::backend
