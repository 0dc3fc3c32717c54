#pragma once

#include <optional>
#include <string>

#include "AntiCheatService.h"
#include "ModuleFront.h"

namespace pelorino {

/// The front of receipt verification. Its handlers are called exactly once, also before the start
/// of the library and when a teardown comes between.
///
/// Threads: any. The service is given on the incomeQueue. Handlers run there when there is nothing
/// to ask, else on the anticheatQueue.
class AntiCheatLogic final : public ModuleFront<AntiCheatService> {
 public:
  using Handler = AntiCheatService::Handler;

  /// Null takes it away, and calls are refused again.
  void setAntiCheatService(AntiCheatService* antiCheatService) { setLogic(antiCheatService); }

  /// `receiptString` goes out as it is; empty, it is refused.
  void verifyPayment(std::string receiptString, Handler completionHandler);
  /// Takes the receipt from the file that the host has named.
  void verifyPaymentWithCompletion(Handler completionHandler);

  /// A larger file is no receipt.
  static constexpr std::size_t maximalReceipt = std::size_t{16} * 1024 * 1024;

 private:
  /// `receipt()` is asked on the incomeQueue; absent, it has said why.
  template <class MakeReceipt>
  void verify(MakeReceipt receipt, Handler completionHandler);
  [[nodiscard]] static std::optional<std::string> getReceipt();
};

}  // namespace pelorino
