#include "Package.h"

namespace pelorino {
namespace {

std::vector<std::string> readEvents(const JsonView& json) {
  std::vector<std::string> events;
  bool areObjects = true;
  json.forEachElement([&](const JsonView& event) {
    areObjects = areObjects && event.isObject();
    if (areObjects) events.emplace_back(event.text());
  });
  if (!areObjects) events.clear();
  return events;
}

}  // namespace

void encode(JsonWriter& json, const Package& package) {
  json.beginObject();
  FieldWriter fields(json);
  Package::describe(package, fields);
  json.key("events");
  json.beginList();
  if (package.events) {
    // Putting a checked text in as it is gives the same value as reading and writing it again.
    for (const std::string& event : *package.events) json.raw(isJsonObject(event) ? event : "{}");
  }
  json.endList();
  json.endObject();
}

void decode(const JsonView& json, Package& package) {
  const FieldReader fields(json);
  Package::describe(package, fields);
  const std::optional<JsonView> events = fields.find("events");
  package.events = events ? readEvents(*events) : std::vector<std::string>();
}

}  // namespace pelorino
