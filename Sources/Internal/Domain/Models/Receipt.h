#pragma once

#include <pelorino/PLRVerifyResponse.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "JsonCoding.h"

namespace pelorino {

/// A store receipt as it is sent for verification.
struct ReceiptData {
  std::string data;      ///< Base64.
  std::string password;  ///< Always empty, and always sent.

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("receipt-data", self.data);
    visit("password", self.password);
  }
};

/// The body of the request for verification.
struct Receipt {
  std::string platform;
  ReceiptData receipt;
  std::optional<std::string> bundle;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("platform", self.platform);
    visit("receipt", self.receipt);
    visit("bundle", self.bundle);
  }
};

/// The backend's answer about a receipt.
struct ReceiptResult {
  std::optional<std::string> verificationResult;
  std::optional<std::int64_t> status;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("verificationResult", self.verificationResult);
    visit("status", self.status);
  }
};

/// Makes the results that hosts cannot make themselves.
struct VerifyResponseMaker {
  [[nodiscard]] static PLRVerifyResponse make(
      PLRReceiptStatus status, std::optional<std::string> verificationResult = std::nullopt) {
    return {std::move(verificationResult), status};
  }
};

}  // namespace pelorino
