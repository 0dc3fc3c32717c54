#include "PeopleValueType.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include "JsonHelpers.h"

namespace pelorino {

std::optional<PeopleValueType> PeopleValueType::from(const AnyCodable& json) {
  if (json.isNull()) return PeopleValueType();
  if (const auto* value = json.boolean()) return *value;
  if (const auto* value = json.text()) return *value;
  if (const auto* value = json.integer()) return *value;
  // In a JSON text only numbers above the range of std::int64_t are unsigned.
  if (const auto* value = json.unsignedInteger()) return static_cast<double>(*value);
  if (const auto* value = json.floating()) return *value;
  return std::nullopt;
}

AnyCodable PeopleValueType::toAnyCodable() const {
  return std::visit(
      [](const auto& value) -> AnyCodable {
        using Kind = std::decay_t<decltype(value)>;
        if constexpr (std::is_same_v<Kind, NullMarker>) {
          return nullptr;
        } else if constexpr (std::is_same_v<Kind, PLRGender>) {
          return static_cast<int>(value);
        } else {
          return value;
        }
      },
      value_);
}

std::optional<std::string> PeopleValueType::toString() const {
  const auto* text = std::get_if<std::string>(&value_);
  return text == nullptr ? std::nullopt : std::optional(*text);
}

double PeopleValueType::toDouble() const {
  if (const auto* integer = std::get_if<std::int64_t>(&value_)) {
    return static_cast<double>(*integer);
  }
  const auto* floating = std::get_if<double>(&value_);
  return floating == nullptr ? 0.0 : *floating;
}

std::int64_t PeopleValueType::toInt() const {
  if (const auto* integer = std::get_if<std::int64_t>(&value_)) return *integer;
  const auto* floating = std::get_if<double>(&value_);
  if (floating == nullptr || std::isnan(*floating)) return 0;
  // 2^63, the first number that is too large. The conversion below is undefined for such numbers.
  constexpr double beyond = 9223372036854775808.0;
  if (*floating >= beyond) return std::numeric_limits<std::int64_t>::max();
  if (*floating < -beyond) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(*floating);
}

PeopleProperties peopleProperties(std::string_view json) {
  PeopleProperties properties;
  if (json.empty()) return properties;
  for (const auto& [key, member] : toDictionary(json)) {
    if (auto value = PeopleValueType::from(member)) properties.emplace(key, std::move(*value));
  }
  return properties;
}

void encode(JsonWriter& json, const PeopleValueType& value) {
  AnyCodable written = value.toAnyCodable();
  // The reader takes 2.0 for the integer 2.
  if (value.get<double>() != nullptr) written = JsonView(encodeJson(written)).value();
  json.value(written);
}

std::string peopleJson(const PeopleProperties& properties) {
  AnyCodable::Object object;
  for (const auto& [key, value] : properties) object.emplace(key, value.toAnyCodable());
  return json(object);
}

}  // namespace pelorino
