#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "PropertyList.h"

namespace pelorino {

/// One object of a keyed archive: a plain value, or one of a class with fields. It borrows the
/// archive, which outlives it.
///
/// Threads: one at a time.
class ArchivedObject final {
 public:
  /// `objects` is the archive's list of all objects. A reference stands for what it refers to.
  ArchivedObject(PropertyValue objects, PropertyValue value);

  /// The name of its class; empty for a plain value.
  [[nodiscard]] std::string className() const;

  /// A field. A missing one is of no kind.
  [[nodiscard]] ArchivedObject operator[](const char* key) const;

  // The value if it is of this kind.
  [[nodiscard]] std::optional<std::string> text() const;
  [[nodiscard]] std::optional<bool> boolean() const { return value_.boolean(); }
  /// Also a real number without a fraction.
  [[nodiscard]] std::optional<std::int64_t> integer() const;
  /// Any finite number.
  [[nodiscard]] std::optional<double> real() const;
  [[nodiscard]] bool isNull() const;
  [[nodiscard]] std::optional<std::vector<ArchivedObject>> list() const;
  /// Also absent if a key is no text. Of two values under one key the last counts.
  [[nodiscard]] std::optional<std::map<std::string, ArchivedObject>> dictionary() const;

 private:
  [[nodiscard]] std::vector<ArchivedObject> elements(const char* key) const;

  PropertyValue objects_;
  PropertyValue value_;
};

/// What the keyed archiver of an earlier generation has written: a property list of objects that
/// refer to each other by number.
class KeyedArchive final {
 public:
  /// Throws LegacyDataError for bytes that are no such archive.
  explicit KeyedArchive(std::string_view bytes);

  /// The object that was archived.
  [[nodiscard]] ArchivedObject root() const;

 private:
  PropertyList list_;
};

}  // namespace pelorino
