#include "JsonCoding.h"

namespace pelorino {
namespace {

constexpr std::size_t shownCharacters = 40;  ///< Bytes of a wrong value in an error text.

}  // namespace

void throwWrongType(const JsonView& json, const char* wanted) {
  throw PLRError("Expected " + std::string(wanted) +
                 " instead of: " + std::string(json.text().substr(0, shownCharacters)));
}

void throwMissingKey(std::string_view key) {
  throw PLRError("The key " + std::string(key) + " is missing");
}

void decode(const JsonView& json, bool& value) {
  if (json.text() != "true" && json.text() != "false") throwWrongType(json, "a boolean");
  value = json.text() == "true";
}

void decode(const JsonView& json, std::int64_t& value) {
  if (!json.isNumber()) throwWrongType(json, "an integer");
  const AnyCodable number = json.value();
  if (number.integer() == nullptr) throwWrongType(json, "an integer");
  value = *number.integer();
}

void decode(const JsonView& json, double& value) {
  if (!json.isNumber()) throwWrongType(json, "a number");
  const AnyCodable number = json.value();
  if (const auto* floating = number.floating()) value = *floating;
  if (const auto* integer = number.integer()) value = static_cast<double>(*integer);
  if (const auto* large = number.unsignedInteger()) value = static_cast<double>(*large);
}

void decode(const JsonView& json, std::string& value) {
  if (!json.isText()) throwWrongType(json, "a text");
  value = *json.value().text();
}

}  // namespace pelorino
