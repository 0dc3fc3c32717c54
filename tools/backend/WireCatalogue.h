#pragma once

#include <span>
#include <string>
#include <string_view>

namespace pelorino::backend {

/// What a value looks like in the JSON that clients send.
enum class WireType {
  text,
  integer,  ///< A JSON number without a fraction.
  time,     ///< An integer: milliseconds since 1970.
  flag,     ///< The number 1 or 0.
  number,   ///< Any JSON number.
  boolean,
  texts,            ///< A list of text.
  oneText,          ///< A list of exactly one text.
  amounts,          ///< An object from text to integer.
  amountsBySource,  ///< An object from text to amounts.
  numbers,          ///< An object from text to number.
  scalars,          ///< An object from text to number, text or boolean; never empty.
  object,           ///< Any object.
  record,           ///< An object of the field's record.
  records,          ///< A list of such objects.
  events,           ///< A list of objects that `eventRecord` tells apart by "code".
};

enum class Presence {
  always,
  ifSet,   ///< The key is left out when there is no value; null is wrong.
  orNull,  ///< The key is always there; null is right.
};

struct WireRecord;

/// One key of a record.
struct WireField {
  std::string_view key;
  WireType type;
  Presence presence = Presence::always;
  std::string_view constant = {};      ///< The only text that is right, if there is one.
  const WireRecord* record = nullptr;  ///< Of `record` and `records`.
};

/// The keys of an object on the wire. Any other key is wrong.
struct WireRecord {
  std::string_view name;
  std::span<const WireField> fields;
};

/// The events of the wire format, one record for each code.
[[nodiscard]] std::span<const WireRecord> eventRecords();

/// The record whose "code" this is; none for an unknown code.
[[nodiscard]] const WireRecord* eventRecord(std::string_view value);

/// The paths of all endpoints, such as "/analytics/report", with "|" between them.
[[nodiscard]] std::string endpointPaths();

/// The body that clients post to an endpoint ("/analytics/report"); none for an unknown endpoint.
[[nodiscard]] const WireRecord* requestRecord(std::string_view path);

}  // namespace pelorino::backend
