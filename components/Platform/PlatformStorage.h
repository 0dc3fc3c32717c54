#pragma once

#include <optional>
#include <string>
#include <utility>

#include "Guarded.h"

namespace pelorino {

/// Remembers a device identifier for the life of the process. Interface only: the library keeps its
/// identifiers in the keychain.
class PlatformStorageProtocol {
 public:
  virtual ~PlatformStorageProtocol() = default;
  virtual void saveUDID(std::string udid) = 0;
  [[nodiscard]] virtual std::optional<std::string> loadUDID() const = 0;
};

/// In memory only. Any thread.
class PlatformStorage final : public PlatformStorageProtocol {
 public:
  void saveUDID(std::string udid) override { savedUdid_.set(std::move(udid)); }
  [[nodiscard]] std::optional<std::string> loadUDID() const override { return savedUdid_.get(); }

 private:
  Guarded<std::optional<std::string>> savedUdid_;
};

}  // namespace pelorino
