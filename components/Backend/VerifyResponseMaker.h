#pragma once

#include <pelorino/PLRVerifyResponse.h>

#include <optional>
#include <string>
#include <utility>

namespace pelorino {

/// Makes what hosts can only be given.
struct VerifyResponseMaker {
  [[nodiscard]] static PLRVerifyResponse make(
      PLRReceiptStatus status, std::optional<std::string> verificationResult = std::nullopt) {
    return {std::move(verificationResult), status};
  }
};

}  // namespace pelorino
