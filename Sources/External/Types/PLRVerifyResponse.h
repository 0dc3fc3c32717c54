#pragma once

#include <pelorino/PLRReceiptStatus.h>

#include <optional>
#include <string>
#include <utility>

namespace pelorino {
struct VerifyResponseMaker;
}

/// The result of a verification. Only the library can make one. It does not change.
class PLRVerifyResponse final {
 public:
  /// The backend's text about the receipt, if it sent one.
  [[nodiscard]] const std::optional<std::string>& verificationResult() const noexcept {
    return verificationResult_;
  }

  [[nodiscard]] PLRReceiptStatus receiptStatus() const noexcept { return receiptStatus_; }

  /// "receiptStatus: [...]" and, if there is a text, " verificationResult: [...]".
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
