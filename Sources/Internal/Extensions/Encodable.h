#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "JsonHelpers.h"

namespace pelorino {

/// A JSON text that many hold. Nobody changes it.
using JsonText = std::shared_ptr<const std::string>;

/// A value that can be written as JSON, its type forgotten. Copies share the value, which nobody
/// may change meanwhile.
class Encodable final {
 public:
  template <class Value>
  explicit Encodable(Value value)
      : write_([shared = std::make_shared<const Value>(std::move(value))] {
          auto text = pelorino::toJSONData(*shared);
          return text ? std::make_shared<const std::string>(*std::move(text)) : nullptr;
        }) {}

  /// A value that is JSON already.
  explicit Encodable(JsonText text) : write_([text = std::move(text)] { return text; }) {}

  /// Compact JSON; null for what JSON cannot hold.
  [[nodiscard]] JsonText toJSONData() const { return write_(); }

 private:
  std::function<JsonText()> write_;
};

}  // namespace pelorino
