#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Decimal.h"
#include "JsonCoding.h"
#include "PeopleValueType.h"
#include "Resources.h"

namespace pelorino {

class Storable;
struct RestoredTransaction;
struct SubscriptionProduct;

/// Visitor that writes fields as text for the log, one line for each field. A table or list gets a
/// line of its own, and its entries follow, indented by one more tab. An empty one is left out.
class FieldLines final {
 public:
  /// Appends to `out`, which is borrowed. Lines begin with `tabs` tabs.
  FieldLines(std::string& out, std::size_t tabs) : out_(out), tabs_(tabs) {}

  void operator()(const Field& field, bool value);
  void operator()(const Field& field, std::int64_t value);
  void operator()(const Field& field, double value);
  void operator()(const Field& field, std::string_view value);
  void operator()(const Field& field, const Decimal& value);
  void operator()(const Field& field, const std::vector<std::string>& values);

  template <class Value>
  void operator()(const Field& field, const std::optional<Value>& value) {
    if (value) (*this)(field, *value);
  }

  template <Described Record>
  void operator()(const Field& field, const Record& record) {
    beginLine().append(field.label()).append(":\n");
    FieldLines deeper(out_, tabs_ + 1);
    Record::describe(record, deeper);
  }

  template <class Value>
  void operator()(const Field& field, const std::map<std::string, Value>& table) {
    if (table.empty()) return;
    beginLine(field) += '\n';
    for (const auto& [key, value] : table) entry(field, key, value);
  }

  template <Described Record>
  void operator()(const Field& field, const std::vector<Record>& records) {
    if (records.empty()) return;
    beginLine(field) += '\n';
    std::int64_t number = 0;
    for (const Record& record : records) element(++number, record);
  }

 private:
  void entry(const Field& field, std::string_view name, std::int64_t amount);
  void entry(const Field& field, std::string_view source, const Resources& resources);
  void entry(const Field& field, std::string_view key, const AnyCodable& value);
  void entry(const Field& field, std::string_view key, const PeopleValueType& value);
  void entry(const Field& field, std::string_view key, const Decimal& value);
  void element(std::int64_t number, const RestoredTransaction& transaction);
  void element(std::int64_t number, const SubscriptionProduct& product);

  /// Begins a line with the tabs of the fields and `deeper` more.
  std::string& beginLine(std::size_t deeper = 0);
  /// Begins the line of a field: everything before its value.
  std::string& beginLine(const Field& field);

  std::string& out_;
  std::size_t tabs_;
};

/// Visitor that writes an event as text for the log. The fields that all events share come first
/// and the progression last, whatever the order in the JSON.
class EventText final {
 public:
  template <class Value>
  void operator()(const Field& field, const Value& value) {
    FieldLines(partOf(field), 1)(field, value);
  }

  [[nodiscard]] std::string take() const;

 private:
  /// The part of the text that the field belongs to.
  [[nodiscard]] std::string& partOf(const Field& field);

  std::array<std::string, 7> parts_;  ///< Four first fields, the others together, two last fields.
};

/// Logs that JSON cannot hold an event.
void logEncodingError(const Storable& event, const PLRError& error);

}  // namespace pelorino
