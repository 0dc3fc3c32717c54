#include "PeopleLogic.h"

#include <optional>
#include <utility>

#include "HostClosure.h"
#include "PeopleValidatorRules.h"
#include "Validator.h"

namespace pelorino {
namespace {

bool isExcluded(const std::string& key) {
  return Validator::isExcluded("pl", AnyCodable(key));
}

/// True unless the key is exactly a reserved one and the value is not of its type.
bool fits(const std::string& key, const PeopleValueType& value) {
  const auto reserved = reservedKey(key);
  return !reserved || rawValue(*reserved) != key ||
         PeopleValidatorRules::validateReservedValueType(*reserved, value);
}

/// Checks a key and a value that the host sets or adds. The type is checked twice: cleaning may
/// leave exactly a reserved key. It does not fold the key once more: what cleaning makes "Email" is
/// the host's own key.
std::optional<PeopleValidatorRules::Property> validateChanges(const char* method, std::string key,
                                                              const PeopleValueType& value) {
  key = normalized(std::move(key));
  if (!fits(key, value)) return std::nullopt;
  auto property = PeopleValidatorRules::validateSet(method, std::move(key), value);
  if (!property || !fits(property->first, property->second)) return std::nullopt;
  return property;
}

}  // namespace

template <class Work>
void PeopleLogic::perform(const char* method, Work work) {
  post(method, [work = std::move(work)](PeopleService* service) mutable {
    if (service != nullptr) work(*service);
  });
}

void PeopleLogic::setReservedValue(PeopleReservedKeys key, PeopleValueType value,
                                   const char* method) {
  perform(method, [key, method, value = std::move(value)](PeopleService& service) mutable {
    const auto property =
        PeopleValidatorRules::validateSet(method, std::string(rawValue(key)), std::move(value));
    if (!property || isExcluded(property->first)) return;
    service.setValue(property->first, property->second);
  });
}

void PeopleLogic::setValue(std::string key, PeopleValueType value, const char* method) {
  change(std::move(key), std::move(value), method, &PeopleService::setValue);
}

void PeopleLogic::increment(std::string key, PeopleValueType value, const char* method) {
  change(std::move(key), std::move(value), method, &PeopleService::increment);
}

void PeopleLogic::change(std::string key, PeopleValueType value, const char* method,
                         Change operation) {
  perform(method, [key = std::move(key), value = std::move(value), method,
                   operation](PeopleService& service) mutable {
    const auto property = validateChanges(method, std::move(key), value);
    if (!property || isExcluded(property->first)) return;
    (service.*operation)(property->first, property->second);
  });
}

void PeopleLogic::getValue(std::string key, ValueHandler handler, const char* method) {
  post(method, [key = std::move(key), handler = std::move(handler),
                method](PeopleService* service) mutable {
    if (service == nullptr) return callHost(handler, std::nullopt);
    auto checked = PeopleValidatorRules::validateKey(method, std::move(key));
    if (!checked) return callHost(handler, std::nullopt);
    service->getValue(normalized(*std::move(checked)),
                      [&](const auto& value) { callHost(handler, value); });
  });
}

void PeopleLogic::unset(std::vector<std::string> properties, const char* method) {
  perform(method, [properties = std::move(properties), method](PeopleService& service) mutable {
    for (std::string& key : properties) key = normalized(std::move(key));
    auto keys = PeopleValidatorRules::validateUnset(method, std::move(properties));
    if (!keys) return;
    std::erase_if(*keys, isExcluded);
    if (!keys->empty()) service.unset(*keys);
  });
}

void PeopleLogic::clearUser(const char* method) {
  perform(method, [](PeopleService& service) { service.clearUser(); });
}

}  // namespace pelorino
