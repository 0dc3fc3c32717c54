#include "KeyedArchive.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace pelorino {
namespace {

constexpr const char* objectsKey = "$objects";
constexpr const char* topKey = "$top";
constexpr const char* rootKey = "root";
constexpr const char* classKey = "$class";

bool isOneOf(const std::string& name, std::initializer_list<const char*> names) {
  return std::ranges::find(names, name) != names.end();
}

PropertyValue resolved(PropertyValue objects, PropertyValue value) {
  const auto reference = value.reference();
  if (!reference) return value;
  // A reference never leads to another one.
  if (*reference >= objects.size()) return PropertyValue();
  return objects.at(static_cast<std::uint32_t>(*reference));
}

}  // namespace

ArchivedObject::ArchivedObject(PropertyValue objects, PropertyValue value)
    : objects_(objects), value_(resolved(objects, value)) {}

std::string ArchivedObject::className() const {
  const ArchivedObject description(objects_, value_[classKey]);
  return description.value_["$classname"].text().value_or(std::string());
}

ArchivedObject ArchivedObject::operator[](const char* key) const {
  return {objects_, value_[key]};
}

std::optional<std::string> ArchivedObject::text() const {
  if (isNull()) return std::nullopt;
  if (isOneOf(className(), {"NSString", "NSMutableString"})) return value_["NS.string"].text();
  return value_.text();
}

std::optional<std::int64_t> ArchivedObject::integer() const {
  const auto number = value_.real();
  if (!number) return value_.integer();
  constexpr double beyond = 0x1p63;
  if (*number != std::trunc(*number) || *number < -beyond || *number >= beyond) return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

std::optional<double> ArchivedObject::real() const {
  if (const auto number = value_.integer()) return static_cast<double>(*number);
  const auto number = value_.real();
  return number && std::isfinite(*number) ? number : std::nullopt;
}

bool ArchivedObject::isNull() const {
  // The first object of every archive stands for none; a null in a collection has a class.
  return value_.text() == "$null" || className() == "NSNull";
}

std::vector<ArchivedObject> ArchivedObject::elements(const char* key) const {
  const PropertyValue values = value_[key];
  std::vector<ArchivedObject> all;
  for (std::uint32_t i = 0; i < values.size(); ++i) all.emplace_back(objects_, values.at(i));
  return all;
}

std::optional<std::vector<ArchivedObject>> ArchivedObject::list() const {
  if (!isOneOf(className(), {"NSArray", "NSMutableArray"})) return std::nullopt;
  return elements("NS.objects");
}

std::optional<std::map<std::string, ArchivedObject>> ArchivedObject::dictionary() const {
  if (!isOneOf(className(), {"NSDictionary", "NSMutableDictionary"})) return std::nullopt;
  const auto keys = elements("NS.keys");
  const auto values = elements("NS.objects");
  if (keys.size() != values.size()) return std::nullopt;
  std::map<std::string, ArchivedObject> all;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    auto key = keys[i].text();
    if (!key) return std::nullopt;
    all.insert_or_assign(*std::move(key), values[i]);
  }
  return all;
}

KeyedArchive::KeyedArchive(std::string_view bytes) : list_(bytes) {
  const PropertyValue all = list_.root();
  if (all["$archiver"].text() != "NSKeyedArchiver" || !all[objectsKey].isList() ||
      !all[topKey].isDictionary()) {
    throw LegacyDataError("no keyed archive");
  }
}

ArchivedObject KeyedArchive::root() const {
  const PropertyValue all = list_.root();
  return {all[objectsKey], all[topKey][rootKey]};
}

}  // namespace pelorino
