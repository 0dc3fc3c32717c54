#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "BackendProtocol.h"
#include "BackendRepositoryProtocol.h"

namespace pelorino {

/// Wraps each request into a message for the repository. Without state of its own.
class Backend final : public BackendProtocol {
 public:
  explicit Backend(std::shared_ptr<BackendRepositoryProtocol> repository)
      : repository_(std::move(repository)) {}

  [[nodiscard]] ConfigAnswer requestConfig(const std::string& appID, const Identifiers& identifiers,
                                           const Versions& versions) override;
  [[nodiscard]] BackendIdentifiers::Outcome requestIdentification(
      const std::string& appID, std::int64_t attempt, const Identifiers& identifiers) override;
  [[nodiscard]] std::optional<PLRError> sendAnalytics(const std::string& appID,
                                                      const Identifiers& identifiers,
                                                      const Reports& reports) override;
  [[nodiscard]] PLRVerifyResponse sendVerifyReceipt(const std::string& appID,
                                                    const Receipt& receipt,
                                                    const Identifiers& identifiers) override;
  [[nodiscard]] std::optional<MessagingConfig> requestMessagingConfig(
      const std::string& appID, const MessagingRequestObject& request,
      const Identifiers& identifiers) override;

 private:
  std::shared_ptr<BackendRepositoryProtocol> repository_;
};

}  // namespace pelorino
