#include "AnyCodable.h"

#include "NumberText.h"

namespace pelorino {

const AnyCodable::List* AnyCodable::list() const {
  const auto* container = std::get_if<Container<List>>(&value_);
  return container != nullptr ? container->items.get() : nullptr;
}

const AnyCodable::Object* AnyCodable::object() const {
  const auto* container = std::get_if<Container<Object>>(&value_);
  return container != nullptr ? container->items.get() : nullptr;
}

bool operator==(const AnyCodable& left, const AnyCodable& right) {
  return left.value_ == right.value_;
}

std::string AnyCodable::description() const {
  if (const std::string* plain = text()) return *plain;
  std::string out;
  appendDebugText(out);
  return out;
}

std::string AnyCodable::debugDescription() const {
  std::string out = "AnyCodable(";
  appendDebugText(out);
  out += ')';
  return out;
}

// The forms "nil", "[]" and "[:]" belong to the format of the log.
void AnyCodable::appendDebugText(std::string& out) const {
  switch (kind()) {
    case Kind::null:
      out += "nil";
      return;
    case Kind::boolean:
      out += *boolean() ? "true" : "false";
      return;
    case Kind::integer:
      appendNumber(out, *integer());
      return;
    case Kind::unsignedInteger:
      appendNumber(out, *unsignedInteger());
      return;
    case Kind::floating:
      appendNumber(out, *floating());
      return;
    case Kind::text:
      out.append(1, '"').append(*text()).append(1, '"');
      return;
    case Kind::list: {
      const char* separator = "[";
      for (const AnyCodable& item : *list()) {
        out += separator;
        item.appendDebugText(out);
        separator = ", ";
      }
      out += list()->empty() ? "[]" : "]";
      return;
    }
    case Kind::object: {
      const char* separator = "[";
      for (const auto& [key, value] : *object()) {
        out.append(separator).append(1, '"').append(key).append("\": ");
        value.appendDebugText(out);
        separator = ", ";
      }
      out += object()->empty() ? "[:]" : "]";
      return;
    }
  }
}

}  // namespace pelorino
