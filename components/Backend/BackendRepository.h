#pragma once

#include <pelorino/PLRVerifyResponse.h>

#include <optional>

#include "Backend.h"
#include "BackendIdentifiers.h"
#include "Config.h"
#include "MessagingConfig.h"
#include "Receipt.h"

namespace pelorino {

/// The endpoints: `backend.ask(BackendRepository::requestConfig, key, identifiers, versions)`.
struct BackendRepository final {
  static const Endpoint<Versions, ConfigAnswer> requestConfig;

  static const Endpoint<BackendIdentifiers::Attempt, BackendIdentifiers::Outcome>
      requestIdentification;

  /// Absent when the backend has accepted the reports; else why they must be sent again.
  static const Endpoint<Reports, std::optional<PLRError>> sendAnalytics;

  static const Endpoint<Receipt, PLRVerifyResponse> sendVerifyReceipt;

  /// Absent when no usable answer came.
  static const Endpoint<MessagingRequestObject, std::optional<MessagingConfig>>
      requestMessagingConfig;
};

}  // namespace pelorino
