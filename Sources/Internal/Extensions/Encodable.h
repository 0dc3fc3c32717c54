#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "JsonHelpers.h"

namespace pelorino {

/// A JSON text that is shared and never changes.
using JsonText = std::shared_ptr<const std::string>;

/// A value of any type that can be written as JSON. Copies share the value. Any thread, but nothing
/// may change what the value refers to.
class Encodable final {
 public:
  template <class Value>
  explicit Encodable(Value value)
      : write_([shared = std::make_shared<const Value>(std::move(value))] {
          auto text = pelorino::toJSONData(*shared);
          return text ? std::make_shared<const std::string>(*std::move(text)) : nullptr;
        }) {}

  /// A text that is JSON already.
  explicit Encodable(JsonText text) : write_([text = std::move(text)] { return text; }) {}

  /// Compact JSON; null if JSON cannot hold the value.
  [[nodiscard]] JsonText toJSONData() const { return write_(); }

 private:
  std::function<JsonText()> write_;
};

}  // namespace pelorino
