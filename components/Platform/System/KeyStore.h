#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

/// A few small named values that outlive the application's own data. Any thread.
class KeyStore {
 public:
  virtual ~KeyStore() = default;

  /// Absent when there is no such value or the store cannot be read.
  [[nodiscard]] virtual std::optional<std::string> get(std::string_view account) = 0;

  /// Adds or replaces. False if the value could not be made durable; the store is then unchanged.
  [[nodiscard]] virtual bool set(std::string_view account, std::string_view value) = 0;

  /// False when there was nothing to remove or it could not be removed.
  [[nodiscard]] virtual bool remove(std::string_view account) = 0;
};

}  // namespace pelorino
