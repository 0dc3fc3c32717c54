#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "EventText.h"
#include "JsonHelpers.h"
#include "RowId.h"

namespace pelorino {

/// An event of any type, to be stored or sent. Immutable; any thread.
class Storable {
 public:
  virtual ~Storable() = default;

  /// The short name of the event's type on the wire and in exclusions.
  [[nodiscard]] virtual std::string_view code() const = 0;

  /// The event as JSON text. If JSON cannot hold it, the text is empty, with a log line.
  [[nodiscard]] virtual std::string getJson() const = 0;

  /// The event for log lines: one line for each field.
  [[nodiscard]] virtual std::string description() const = 0;
};

/// Makes an event from a record: `service.addEvent(Event(SessionStart{.timestamp = now}))`.
///
/// A record is a plain struct with a constant `code`, and a `describe` that lists its fields.
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

/// A row of the table `events`: one event that waits to be packed. incomeQueue only.
class EventObject final {
 public:
  std::string code;
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;  ///< `idKey` of the owner; -1 for an event that is not stored.
  std::string json;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("code", self.code);
    visit("idKey", self.idKey);
    visit("userId", self.userId);
    visit("json", self.json);
  }
};

}  // namespace pelorino
