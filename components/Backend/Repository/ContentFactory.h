#pragma once

#include <memory>

#include "BackendMessage.h"
#include "NetworkProtocols.h"

namespace pelorino {

class ContentFactoryProtocol {
 public:
  virtual ~ContentFactoryProtocol() = default;
  [[nodiscard]] virtual std::shared_ptr<const RequestContentProtocol> makeContent(
      const BackendMessage& message) const = 0;
};

/// Turns a message into a JSON body with the headers that identify device and user.
class ContentFactory final : public ContentFactoryProtocol {
 public:
  [[nodiscard]] std::shared_ptr<const RequestContentProtocol> makeContent(
      const BackendMessage& message) const override;
};

}  // namespace pelorino
