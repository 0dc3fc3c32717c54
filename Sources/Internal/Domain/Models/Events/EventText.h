#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonCoding.h"
#include "Storable.h"

namespace pelorino {

/// Visitor that collects the text form of an event: one line a field, those that all events share
/// first and the progression last, whatever their order in the JSON.
class EventText final {
 public:
  template <class Value>
  void operator()(const Field& field, const std::optional<Value>& value) {
    if (value) (*this)(field, *value);
  }
  void operator()(const Field& field, bool value);
  void operator()(const Field& field, std::int64_t value);
  void operator()(const Field& field, double value);
  void operator()(const Field& field, std::string_view value);
  void operator()(const Field& field, const std::vector<std::string>& values);
  /// Resources: a head line and a line an entry; nothing when empty.
  void operator()(const Field& field, const std::map<std::string, std::int64_t>& amounts);
  /// Parameters, likewise.
  void operator()(const Field& field, const AnyCodable::Object& parameters);

  [[nodiscard]] std::string take() const;

 private:
  /// The part of the text that the field belongs to.
  [[nodiscard]] std::string& partOf(const Field& field);
  /// Begins the line of a field up to its value.
  std::string& beginLine(const Field& field);

  std::array<std::string, 7> parts_;
};

/// Writes the line about an event that JSON cannot hold.
void logEncodingError(const Storable& event, const PLRError& error);

}  // namespace pelorino
