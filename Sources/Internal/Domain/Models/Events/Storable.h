#pragma once

#include <string>
#include <string_view>

namespace pelorino {

/// An event value on its way to the store, whatever its type. Immutable.
class Storable {
 public:
  virtual ~Storable() = default;

  /// The short text that tells event types apart on the wire and in exclusions.
  [[nodiscard]] virtual std::string_view code() const = 0;

  /// The event as JSON text; empty, with a line in the log, when JSON cannot hold it.
  [[nodiscard]] virtual std::string getJson() const = 0;

  /// The event as the log shows it: one line a field.
  [[nodiscard]] virtual std::string description() const = 0;
};

}  // namespace pelorino
