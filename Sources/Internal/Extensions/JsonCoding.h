#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "AnyCodable.h"
#include "JsonView.h"
#include "JsonWriter.h"
#include "PLRError.h"

// A record lists its fields once, in the order in which they are written:
//
//   template <class Self, class Visit>
//   static void describe(Self& self, Visit& visit) {
//     visit("version", self.version);
//     visit("all", self.all);
//   }
//
// Writing JSON, reading JSON and the text for the log are visitors of that one list. An absent
// std::optional field is left out. All other fields are required. A constant is written and never
// read.

namespace pelorino {

/// The key of a field, and how the field differs from the rules above.
class Field final {
 public:
  constexpr Field(const char* key) : key_(key), label_(key) {}

  /// The field's name in the log, if it is not the key.
  [[nodiscard]] constexpr Field labelled(const char* label) const {
    return with([&](Field& field) { field.label_ = label; });
  }
  /// The names of the key and the value of a table's entries in the log.
  [[nodiscard]] constexpr Field entriesLabelled(const char* name, const char* value) const {
    return with([&](Field& field) { field.entryName_ = name, field.entryValue_ = value; });
  }
  /// An absent value is written as null. When read, the key must be there.
  [[nodiscard]] constexpr Field nullWhenAbsent() const {
    return with([](Field& field) { field.isNullWhenAbsent_ = true; });
  }
  /// An empty list, table or text is not written.
  [[nodiscard]] constexpr Field leftOutWhenEmpty() const {
    return with([](Field& field) { field.isLeftOutWhenEmpty_ = true; });
  }

  [[nodiscard]] constexpr std::string_view key() const { return key_; }
  [[nodiscard]] constexpr std::string_view label() const { return label_; }
  [[nodiscard]] constexpr std::string_view entryName() const { return entryName_; }
  [[nodiscard]] constexpr std::string_view entryValue() const { return entryValue_; }
  [[nodiscard]] constexpr bool isNullWhenAbsent() const { return isNullWhenAbsent_; }
  [[nodiscard]] constexpr bool isLeftOutWhenEmpty() const { return isLeftOutWhenEmpty_; }

 private:
  template <class Change>
  [[nodiscard]] constexpr Field with(Change change) const {
    Field copy = *this;
    change(copy);
    return copy;
  }

  std::string_view key_;
  std::string_view label_;
  std::string_view entryName_ = "resource";
  std::string_view entryValue_ = "amount";
  bool isNullWhenAbsent_ = false;
  bool isLeftOutWhenEmpty_ = false;
};

/// Only for the concept below: accepts every field.
struct AnyVisitor {
  template <class Value>
  void operator()(Field, Value&&) {}
};

/// A record with the `describe` shown above.
template <class Record>
concept Described = requires(Record& record, AnyVisitor& visit) {
  std::remove_const_t<Record>::describe(record, visit);
};

// ---- Writing. Errors are thrown as PLRError. ----

inline void encode(JsonWriter& json, std::same_as<bool> auto value) {
  json.boolean(value);
}
inline void encode(JsonWriter& json, std::int64_t value) {
  json.integer(value);
}
inline void encode(JsonWriter& json, int value) {
  json.integer(value);
}
inline void encode(JsonWriter& json, double value) {
  json.floating(value);
}
inline void encode(JsonWriter& json, std::string_view value) {
  json.text(value);
}
inline void encode(JsonWriter& json, const std::string& value) {
  json.text(value);
}
inline void encode(JsonWriter& json, const AnyCodable& value) {
  json.value(value);
}

template <class Value>
void encode(JsonWriter& json, const std::vector<Value>& values);
template <class Value>
void encode(JsonWriter& json, const std::map<std::string, Value>& values);
template <Described Record>
void encode(JsonWriter& json, const Record& record);

/// Visitor that writes the fields of a record into an object that the writer has begun.
class FieldWriter final {
 public:
  explicit FieldWriter(JsonWriter& json) : json_(json) {}

  template <class Value>
  void operator()(const Field& field, const std::optional<Value>& value) {
    if (value) {
      (*this)(field, *value);
    } else if (field.isNullWhenAbsent()) {
      json_.key(field.key());
      json_.null();
    }
  }

  template <class Value>
  void operator()(const Field& field, const Value& value) {
    if constexpr (requires { value.empty(); }) {
      if (field.isLeftOutWhenEmpty() && value.empty()) return;
    }
    json_.key(field.key());
    encode(json_, value);
  }

 private:
  JsonWriter& json_;
};

template <class Value>
void encode(JsonWriter& json, const std::vector<Value>& values) {
  json.beginList();
  for (const Value& value : values) encode(json, value);
  json.endList();
}

template <class Value>
void encode(JsonWriter& json, const std::map<std::string, Value>& values) {
  json.beginObject();
  for (const auto& [key, value] : values) {
    json.key(key);
    encode(json, value);
  }
  json.endObject();
}

template <Described Record>
void encode(JsonWriter& json, const Record& record) {
  json.beginObject();
  FieldWriter fields(json);
  Record::describe(record, fields);
  json.endObject();
}

// ---- Reading. A missing key or a value of another type throws PLRError. ----

void decode(const JsonView& json, bool& value);
void decode(const JsonView& json, std::int64_t& value);
void decode(const JsonView& json, double& value);
void decode(const JsonView& json, std::string& value);
inline void decode(const JsonView& json, AnyCodable& value) {
  value = json.value();
}

template <class Value>
void decode(const JsonView& json, std::vector<Value>& values);
template <class Value>
void decode(const JsonView& json, std::map<std::string, Value>& values);
template <Described Record>
void decode(const JsonView& json, Record& record);

[[noreturn]] void throwWrongType(const JsonView& json, const char* wanted);
[[noreturn]] void throwMissingKey(std::string_view key);

/// Visitor that reads the fields of a record from an object.
class FieldReader final {
 public:
  /// Throws PLRError if the value is not an object.
  explicit FieldReader(const JsonView& json) : members_(json) {
    if (!json.isObject()) throwWrongType(json, "an object");
  }

  template <class Value>
  void operator()(const Field& field, std::optional<Value>& value) const {
    value.reset();
    const std::optional<JsonView> found = find(field.key());
    if (!found && field.isNullWhenAbsent()) throwMissingKey(field.key());
    if (found && !found->isNull()) decode(*found, value.emplace());
  }

  template <class Value>
  void operator()(const Field& field, Value& value) const {
    if constexpr (!std::is_const_v<Value>) decode(at(field.key()), value);
  }

  /// Absent if the key is missing.
  [[nodiscard]] std::optional<JsonView> find(std::string_view key) const {
    return members_.find(key);
  }

  /// Throws PLRError if the key is missing.
  [[nodiscard]] JsonView at(std::string_view key) const {
    const std::optional<JsonView> found = find(key);
    if (!found) throwMissingKey(key);
    return *found;
  }

 private:
  JsonMembers members_;
};

template <class Value>
void decode(const JsonView& json, std::vector<Value>& values) {
  if (!json.isList()) throwWrongType(json, "a list");
  values.clear();
  json.forEachElement([&](const JsonView& element) { decode(element, values.emplace_back()); });
}

template <class Value>
void decode(const JsonView& json, std::map<std::string, Value>& values) {
  if (!json.isObject()) throwWrongType(json, "an object");
  values.clear();
  json.forEachMember([&](std::string key, const JsonView& member) {
    decode(member, values.insert_or_assign(std::move(key), Value()).first->second);
  });
}

template <Described Record>
void decode(const JsonView& json, Record& record) {
  const FieldReader fields(json);
  Record::describe(record, fields);
}

}  // namespace pelorino
