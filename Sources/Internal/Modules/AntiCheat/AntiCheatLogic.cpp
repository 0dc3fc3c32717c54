#include "AntiCheatLogic.h"

#include <memory>
#include <utility>

#include "Base64.h"
#include "Host.h"
#include "Logger.h"
#include "ResolvedHost.h"
#include "System.h"

namespace pelorino {
namespace {

constexpr const char* platform = "ios";

void logError(std::string_view message, std::string_view detail = {}) {
  Logger::writeLog(PLRLogLevel::error, [&] { return std::string(message).append(detail); });
}

void answerInternalError(const AntiCheatLogic::Handler& handler) {
  callHost(handler, VerifyResponseMaker::make(PLRReceiptStatus::internalError));
}

}  // namespace

void AntiCheatLogic::verifyPayment(std::string receiptString, Handler completionHandler) {
  verify(
      [given = std::move(receiptString)]() mutable -> std::optional<std::string> {
        if (!given.empty()) return std::move(given);
        logError("Invalid receipt data.");
        return std::nullopt;
      },
      std::move(completionHandler));
}

void AntiCheatLogic::verifyPaymentWithCompletion(Handler completionHandler) {
  verify(getReceipt, std::move(completionHandler));
}

template <class MakeReceipt>
void AntiCheatLogic::verify(MakeReceipt receipt, Handler completionHandler) {
  // Shared by two closures. Exactly one of them runs.
  const auto handler = std::make_shared<const Handler>(std::move(completionHandler));
  enqueue(
      [handler, receipt = std::move(receipt)](AntiCheatService* service) mutable {
        if (!validateInitialization("VerifyPayment", service != nullptr)) {
          return answerInternalError(*handler);
        }
        auto data = receipt();
        if (!data) return answerInternalError(*handler);
        service->receiveReceiptStatus({.platform = platform,
                                       .receipt = {.data = *std::move(data), .password = {}},
                                       .bundle = Host::facts().bundleIdentifier()},
                                      *handler);
      },
      [handler] { answerInternalError(*handler); });
}

/// A missing file is not logged: not every application has a receipt.
std::optional<std::string> AntiCheatLogic::getReceipt() {
  const auto path = Host::facts().receiptFile();
  Files& files = System::current().files();
  if (!path || !files.exists(*path)) return std::nullopt;
  const auto [content, failure] = files.read(*path, maximalReceipt);
  if (content) return base64(*content);
  logError("Couldn't read receipt data. Error: ", failure);
  return std::nullopt;
}

}  // namespace pelorino
