#pragma once

#include <pelorino/PLRReceiptStatus.h>

#include <optional>
#include <string>
#include <utility>

namespace pelorino {
struct VerifyResponseMaker;
}

/// The answer to a verification. Only the library makes one.
class PLRVerifyResponse final {
 public:
  /// The backend's words about the receipt.
  [[nodiscard]] const std::optional<std::string>& verificationResult() const noexcept {
    return verificationResult_;
  }

  [[nodiscard]] PLRReceiptStatus receiptStatus() const noexcept { return receiptStatus_; }

  /// "receiptStatus: [...]" and, if there are words, " verificationResult: [...]".
  [[nodiscard]] std::string description() const {
    std::string text = std::string("receiptStatus: [") + ::description(receiptStatus_) + "]";
    if (verificationResult_) text += " verificationResult: [" + *verificationResult_ + "]";
    return text;
  }

 private:
  friend struct pelorino::VerifyResponseMaker;

  PLRVerifyResponse(std::optional<std::string> verificationResult, PLRReceiptStatus receiptStatus)
      : verificationResult_(std::move(verificationResult)), receiptStatus_(receiptStatus) {}

  std::optional<std::string> verificationResult_;
  PLRReceiptStatus receiptStatus_;
};
