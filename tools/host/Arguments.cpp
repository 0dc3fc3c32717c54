#include "Arguments.h"

#include <fmt/format.h>

#include <algorithm>

namespace pelorino::host {

namespace json = boost::json;

void refuse(std::string_view name, std::string_view kind) {
  throw CommandError(fmt::format("\"{}\" is not {}", name, kind));
}

namespace {

std::int64_t integerOf(std::string_view name, const json::value& value) {
  if (!value.is_int64()) refuse(name, "an integer");
  return value.get_int64();
}

std::string textOf(std::string_view name, const json::value& value) {
  if (!value.is_string()) refuse(name, "a text");
  return std::string(value.get_string());
}

Arguments objectOf(std::string_view name, const json::value& value) {
  if (!value.is_object()) refuse(name, "an object");
  return Arguments(value.get_object());
}

const json::array& listOf(std::string_view name, const json::value& value) {
  if (!value.is_array()) refuse(name, "a list");
  return value.get_array();
}

}  // namespace

const json::value* Arguments::find(std::string_view name) const {
  const json::value* value = object_->if_contains(name);
  return value && !value->is_null() ? value : nullptr;
}

const json::value& Arguments::need(std::string_view name) const {
  const json::value* value = find(name);
  if (!value) throw CommandError(fmt::format("\"{}\" is missing", name));
  return *value;
}

void Arguments::allowOnly(std::span<const std::string_view> names) const {
  for (const auto& [key, ignored] : *object_) {
    if (std::ranges::find(names, std::string_view(key)) == names.end()) {
      throw CommandError(fmt::format("\"{}\" is not known here", std::string_view(key)));
    }
  }
}

std::string Arguments::text(std::string_view name) const {
  return textOf(name, need(name));
}

std::int64_t Arguments::integer(std::string_view name) const {
  return integerOf(name, need(name));
}

double Arguments::number(std::string_view name) const {
  const json::value& value = need(name);
  if (!value.is_number()) refuse(name, "a number");
  return value.to_number<double>();
}

bool Arguments::boolean(std::string_view name) const {
  const json::value& value = need(name);
  if (!value.is_bool()) refuse(name, "true or false");
  return value.get_bool();
}

Arguments Arguments::object(std::string_view name) const {
  return objectOf(name, need(name));
}

std::map<std::string, std::int64_t> Arguments::integers(std::string_view name) const {
  std::map<std::string, std::int64_t> entries;
  for (const auto& [key, value] : object(name).fields()) {
    entries.emplace(key, integerOf(key, value));
  }
  return entries;
}

std::optional<std::string> Arguments::maybeText(std::string_view name) const {
  const json::value* value = find(name);
  if (!value) return std::nullopt;
  return textOf(name, *value);
}

std::optional<std::int64_t> Arguments::maybeInteger(std::string_view name) const {
  const json::value* value = find(name);
  if (!value) return std::nullopt;
  return integerOf(name, *value);
}

std::optional<std::vector<std::string>> Arguments::maybeTexts(std::string_view name) const {
  const json::value* value = find(name);
  if (!value) return std::nullopt;
  std::vector<std::string> texts;
  for (const json::value& element : listOf(name, *value)) texts.push_back(textOf(name, element));
  return texts;
}

std::optional<Arguments> Arguments::maybeObject(std::string_view name) const {
  const json::value* value = find(name);
  if (!value) return std::nullopt;
  return objectOf(name, *value);
}

std::vector<Arguments> Arguments::maybeObjects(std::string_view name) const {
  std::vector<Arguments> objects;
  const json::value* value = find(name);
  if (!value) return objects;
  for (const json::value& element : listOf(name, *value)) {
    objects.push_back(objectOf(name, element));
  }
  return objects;
}

}  // namespace pelorino::host
