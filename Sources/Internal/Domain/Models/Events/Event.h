#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "EventText.h"
#include "JsonHelpers.h"
#include "Storable.h"

namespace pelorino {

/// Makes a storable event of a record: `service.addEvent(Event(SessionStart{.timestamp = now}))`.
///
/// A record is a plain struct with a constant `code` and a `describe` of the fields that follow it.
template <Described Record>
class Event final : public Storable {
 public:
  explicit Event(Record fields) : record(std::move(fields)) {}

  const Record record;

  [[nodiscard]] std::string_view code() const override { return Record::code; }

  [[nodiscard]] std::string getJson() const override {
    try {
      JsonWriter json;
      json.beginObject();
      FieldWriter fields(json);
      visitFields(fields);
      json.endObject();
      return json.take();
    } catch (const PLRError& error) {
      logEncodingError(*this, error);
      return {};
    }
  }

  [[nodiscard]] std::string description() const override {
    EventText text;
    visitFields(text);
    return text.take();
  }

 private:
  template <class Visit>
  void visitFields(Visit& visit) const {
    visit("code", Record::code);
    Record::describe(record, visit);
  }
};

}  // namespace pelorino
