#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "BackendRepositoryProtocol.h"
#include "ContentFactory.h"
#include "NetworkProtocols.h"

namespace pelorino {

/// Knows the endpoints: what goes to each, and what its answers mean. Without state of its own, so
/// that the network queues share it. Nothing is thrown but std::bad_alloc.
class BackendRepository final : public BackendRepositoryProtocol {
 public:
  BackendRepository(std::shared_ptr<NetworkProtocol> network,
                    std::shared_ptr<ContentFactoryProtocol> contentFactory)
      : network_(std::move(network)), contentFactory_(std::move(contentFactory)) {}

  [[nodiscard]] ConfigAnswer requestConfig(const std::string& appID,
                                           const BackendMessage& message) override;
  [[nodiscard]] BackendIdentifiers::Outcome requestIdentification(
      const std::string& appID, const BackendMessage& message) override;
  [[nodiscard]] std::optional<PLRError> sendAnalytics(
      const std::string& appID, const BackendMessage& message,
      const std::optional<std::string>& requestIdentifier) override;
  [[nodiscard]] PLRVerifyResponse sendVerifyReceipt(const std::string& appID,
                                                    const BackendMessage& message) override;
  [[nodiscard]] std::optional<MessagingConfig> requestMessagingConfig(
      const std::string& appID, const BackendMessage& message) override;

 private:
  /// Throws what a request that cannot be built throws.
  [[nodiscard]] Response exchange(const char* path, const std::string& appID,
                                  const BackendMessage& message,
                                  const std::optional<std::string>& requestIdentifier = {}) const;

  std::shared_ptr<NetworkProtocol> network_;
  std::shared_ptr<ContentFactoryProtocol> contentFactory_;
};

}  // namespace pelorino
