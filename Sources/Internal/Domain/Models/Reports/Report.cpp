#include "Report.h"

#include <utility>

#include "JsonHelpers.h"

namespace pelorino {
namespace {

/// None if an element is not an object: the stored text may be anything.
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

// The text around the packages of a report, and around the reports of a delivery. A body is built
// once; other forms are cut out of it instead of encoding the packages again.
constexpr std::string_view listOpening = R"({"reports":[)";
constexpr std::string_view listClosing = "]}";
constexpr std::string_view reportOpening = R"({"packages":)";
constexpr std::string_view reportClosing = "}";

std::string_view between(std::string_view opening, std::string_view text,
                         std::string_view closing) {
  return text.substr(opening.size(), text.size() - opening.size() - closing.size());
}

JsonText bodyOf(const std::vector<Package>& packages) {
  JsonWriter json(std::string(listOpening).append(reportOpening));
  encode(json, packages);
  return std::make_shared<const std::string>(json.take().append(reportClosing).append(listClosing));
}

}  // namespace

void encode(JsonWriter& json, const Package& package) {
  json.beginObject();
  FieldWriter fields(json);
  Package::describe(package, fields);
  json.key("events");
  json.beginList();
  if (package.events) {
    // The event's text is checked and then copied, which is cheaper than decoding and encoding it.
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

Report::Report(const std::vector<Package>& with, std::string id)
    : uuid(std::move(id)), body_(bodyOf(with)) {}

const JsonText& Report::body() {
  if (!body_) {
    body_ = bodyOf(
        from<std::vector<Package>>(packagesJson.value_or("")).value_or(std::vector<Package>()));
    packagesJson.reset();  // The body contains it.
  }
  return body_;
}

std::optional<std::string> Report::stored() const {
  if (!body_) return packagesJson;
  const std::string_view report = between(listOpening, *body_, listClosing);
  return std::string(between(reportOpening, report, reportClosing));
}

JsonText Reports::json() const {
  if (reports.size() == 1) return reports.front()->body();
  std::string text(listOpening);
  for (const auto& report : reports) {
    if (text.size() > listOpening.size()) text += ',';
    text += between(listOpening, *report->body(), listClosing);
  }
  return std::make_shared<const std::string>(text.append(listClosing));
}

}  // namespace pelorino
