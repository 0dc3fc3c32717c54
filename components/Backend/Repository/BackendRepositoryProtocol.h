#pragma once

#include <optional>
#include <string>

#include "BackendMessage.h"
#include "BackendProtocol.h"

namespace pelorino {

/// The five endpoints. `appID` is the application key and goes into the URL as it is.
class BackendRepositoryProtocol {
 public:
  virtual ~BackendRepositoryProtocol() = default;

  [[nodiscard]] virtual ConfigAnswer requestConfig(const std::string& appID,
                                                   const BackendMessage& message) = 0;
  [[nodiscard]] virtual BackendIdentifiers::Outcome requestIdentification(
      const std::string& appID, const BackendMessage& message) = 0;
  /// `requestIdentifier` names the exchange in the log.
  [[nodiscard]] virtual std::optional<PLRError> sendAnalytics(
      const std::string& appID, const BackendMessage& message,
      const std::optional<std::string>& requestIdentifier) = 0;
  [[nodiscard]] virtual PLRVerifyResponse sendVerifyReceipt(const std::string& appID,
                                                            const BackendMessage& message) = 0;
  [[nodiscard]] virtual std::optional<MessagingConfig> requestMessagingConfig(
      const std::string& appID, const BackendMessage& message) = 0;
};

}  // namespace pelorino
