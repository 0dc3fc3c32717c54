#pragma once

#include <optional>
#include <utility>

#include "SynchronousQueue.h"

namespace pelorino {

/// A value that is read at its first use and then kept. Any thread. A thread that asks while
/// another one reads waits.
template <class Value>
class Lazy final {
 public:
  template <class Read>
  [[nodiscard]] Value get(Read&& read) {
    return reading_.sync([&]() -> Value {
      if (!value_) value_ = std::forward<Read>(read)();
      return *value_;
    });
  }

 private:
  SynchronousQueue reading_{"com.pelorino.platform"};
  std::optional<Value> value_;
};

}  // namespace pelorino
