#pragma once

#include <pelorino/PLRVerifyResponse.h>

#include <cstdint>
#include <optional>
#include <string>

#include "BackendIdentifiers.h"
#include "Config.h"
#include "Identifiers.h"
#include "MessagingConfig.h"
#include "PLRError.h"
#include "Receipt.h"
#include "Report.h"

namespace pelorino {

/// A configuration, and whether it is the built-in one for want of an answer.
struct ConfigAnswer {
  Config config;
  bool isDefault;
};

/// What services ask of the backend. Every operation blocks until the exchange ends, so it is
/// called on a network queue. None retries; failures are values.
class BackendProtocol {
 public:
  virtual ~BackendProtocol() = default;

  [[nodiscard]] virtual ConfigAnswer requestConfig(const std::string& appID,
                                                   const Identifiers& identifiers,
                                                   const Versions& versions) = 0;

  /// `attempt` counts from 1.
  [[nodiscard]] virtual BackendIdentifiers::Outcome requestIdentification(
      const std::string& appID, std::int64_t attempt, const Identifiers& identifiers) = 0;

  /// Absent when the backend has accepted the reports; else why they must be sent again.
  [[nodiscard]] virtual std::optional<PLRError> sendAnalytics(const std::string& appID,
                                                              const Identifiers& identifiers,
                                                              const Reports& reports) = 0;

  [[nodiscard]] virtual PLRVerifyResponse sendVerifyReceipt(const std::string& appID,
                                                            const Receipt& receipt,
                                                            const Identifiers& identifiers) = 0;

  /// Absent when no usable answer came.
  [[nodiscard]] virtual std::optional<MessagingConfig> requestMessagingConfig(
      const std::string& appID, const MessagingRequestObject& request,
      const Identifiers& identifiers) = 0;
};

}  // namespace pelorino
