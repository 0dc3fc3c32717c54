#include "EventText.h"

#include "Logger.h"
#include "NumberText.h"

namespace pelorino {
namespace {

constexpr std::array<std::string_view, 4> firstFields = {"code", "timestamp", "sessionId", "level"};
constexpr std::array<std::string_view, 2> lastFields = {"inProgress", "inExperiments"};

std::size_t partIndex(std::string_view label) {
  for (std::size_t i = 0; i < firstFields.size(); ++i) {
    if (firstFields[i] == label) return i;
  }
  for (std::size_t i = 0; i < lastFields.size(); ++i) {
    if (lastFields[i] == label) return firstFields.size() + 1 + i;
  }
  return firstFields.size();
}

}  // namespace

std::string& EventText::partOf(const Field& field) {
  return parts_.at(partIndex(field.label()));
}

std::string& EventText::beginLine(const Field& field) {
  return partOf(field).append("\t ").append(field.label()).append(": ");
}

void EventText::operator()(const Field& field, bool value) {
  beginLine(field).append(value ? "true\n" : "false\n");
}

void EventText::operator()(const Field& field, std::int64_t value) {
  std::string& line = beginLine(field);
  appendNumber(line, value);
  line += '\n';
}

void EventText::operator()(const Field& field, double value) {
  std::string& line = beginLine(field);
  appendNumber(line, value);
  line += '\n';
}

void EventText::operator()(const Field& field, std::string_view value) {
  beginLine(field).append(value).append(1, '\n');
}

void EventText::operator()(const Field& field, const std::vector<std::string>& values) {
  std::string& line = beginLine(field);
  for (const std::string& value : values)
    line.append(&value == values.data() ? "" : ", ").append(value);
  line += '\n';
}

void EventText::operator()(const Field& field, const std::map<std::string, std::int64_t>& amounts) {
  if (amounts.empty()) return;
  std::string& lines = beginLine(field).append(1, '\n');
  for (const auto& [name, amount] : amounts) {
    lines.append("\t\t ").append(field.entryName()).append(": ").append(name);
    lines.append(1, ' ').append(field.entryValue()).append(": ");
    appendNumber(lines, amount);
    lines += '\n';
  }
}

void EventText::operator()(const Field& field, const AnyCodable::Object& parameters) {
  if (parameters.empty()) return;
  std::string& lines = beginLine(field).append(1, '\n');
  for (const auto& [key, value] : parameters) {
    lines.append("\t\t parameter key: ").append(key);
    lines.append(" value: ").append(value.description()).append(1, '\n');
  }
}

std::string EventText::take() const {
  std::string text;
  for (const std::string& part : parts_) text += part;
  return text;
}

void logEncodingError(const Storable& event, const PLRError& error) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return "When trying to get json string from \n\t[" + event.description() +
           "] \n\tobject an error has occurred: " + error.description();
  });
}

}  // namespace pelorino
