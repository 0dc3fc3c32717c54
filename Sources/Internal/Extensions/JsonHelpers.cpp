#include "JsonHelpers.h"

#include "Logger.h"

namespace pelorino {

AnyCodable::Object toDictionary(std::string_view text) {
  try {
    const AnyCodable value = JsonView(text).value();
    return value.object() != nullptr ? *value.object() : AnyCodable::Object();
  } catch (const PLRError& error) {
    Logger::writeLog(PLRLogLevel::error, [&] {
      return "When trying to convert String to Dictionary, an error has occurred: " +
             error.description();
    });
    return {};
  }
}

std::string json(const AnyCodable::Object& dictionary) {
  return toJSONData(dictionary).value_or("Not a valid JSON");
}

}  // namespace pelorino
