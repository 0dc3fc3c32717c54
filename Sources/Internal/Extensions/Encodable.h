#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "JsonHelpers.h"

namespace pelorino {

/// A value that can be written as JSON, its type forgotten. Copies share the value, which nobody
/// may change meanwhile.
class Encodable final {
 public:
  template <class Value>
  explicit Encodable(Value value)
      : write_([shared = std::make_shared<const Value>(std::move(value))] {
          return pelorino::toJSONData(*shared);
        }) {}

  /// Compact JSON; absent for what JSON cannot hold.
  [[nodiscard]] std::optional<std::string> toJSONData() const { return write_(); }

 private:
  std::function<std::optional<std::string>()> write_;
};

}  // namespace pelorino
