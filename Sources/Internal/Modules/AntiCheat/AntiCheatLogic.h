#pragma once

#include <optional>
#include <string>

#include "AntiCheatService.h"
#include "ModuleFront.h"

namespace pelorino {

/// The front of receipt verification. Each handler is called exactly once, even if the library is
/// not started or ends meanwhile.
///
/// Threads: any, except setAntiCheatService(): the incomeQueue only. Handlers run on the
/// anticheatQueue, or on the incomeQueue if the backend is not asked.
/// Errors:  logged; the handler gets `internalError`.
class AntiCheatLogic final : public ModuleFront<AntiCheatService> {
 public:
  using Handler = AntiCheatService::Handler;

  /// Sets the service, which is borrowed. With null, calls are refused.
  void setAntiCheatService(AntiCheatService* antiCheatService) { setLogic(antiCheatService); }

  /// Sends `receiptString` as it is. An empty one is refused.
  void verifyPayment(std::string receiptString, Handler completionHandler);
  /// Reads the receipt from the file that the host has named.
  void verifyPaymentWithCompletion(Handler completionHandler);

  /// In bytes. A larger file cannot be a receipt.
  static constexpr std::size_t maximalReceipt = std::size_t{16} * 1024 * 1024;

 private:
  /// Calls `receipt()` on the incomeQueue. If that returns nothing, it has logged why.
  template <class MakeReceipt>
  void verify(MakeReceipt receipt, Handler completionHandler);
  [[nodiscard]] static std::optional<std::string> getReceipt();
};

}  // namespace pelorino
