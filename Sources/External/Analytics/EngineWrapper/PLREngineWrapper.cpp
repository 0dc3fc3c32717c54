#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "Base64.h"
#include "Front.h"
#include "HostText.h"
#include "Logger.h"
#include "SdkConstraints.h"

using namespace pelorino;

std::function<void(PLRLogLevel, const std::string&)>
PLREngineWrapper::engineLoggerMessageClosure() {
  return enter("engineLoggerMessageClosure", Logger::EngineClosure(),
               Logger::engineLoggerMessageClosure);
}

void PLREngineWrapper::setEngineLoggerMessageClosure(
    std::function<void(PLRLogLevel, const std::string&)> closure) noexcept {
  enter("engineLoggerMessageClosure",
        [&] { Logger::setEngineLoggerMessageClosure(std::move(closure)); });
}

void PLREngineWrapper::destroySDK() noexcept {
  enter("destroySDK", [] { Core::destroy(); });
}

void PLREngineWrapper::setSDKVersion(std::string_view version) noexcept {
  enter("setSDKVersion", [&] { SdkConstraints::setSdkVersion(repaired(version)); });
}

void PLREngineWrapper::enableEditorMode() noexcept {
  enter("enableEditorMode", [] { Core::shared()->enableEditorMode(); });
}

std::string PLREngineWrapper::unitySdkFolderPath() {
  return PLRAnalytics::sdkFolderPath();
}

void PLREngineWrapper::testString(std::string_view value) noexcept {
  // Not repaired: the line must show the bytes that arrived.
  enter("testString", [&] {
    Logger::writeLog(PLRLogLevel::debug, [&] {
      return "[EngineWrapper] Test string:\n\tOrigin: [" + std::string(value) +
             "]\n\tBase64: [Optional(\"" + base64(value) + "\")]";
    });
  });
}

void PLREngineWrapper::engineSubscriptionHistory(
    const std::map<std::string, std::vector<std::string>>& transactions) noexcept {
  submit("engineSubscriptionHistory", [&] {
    EngineSubscriptionHistoryCall call;
    // Repairing may make two products equal. Then their lists are joined.
    for (const auto& [productId, ids] : transactions) {
      std::ranges::move(repaired(ids), std::back_inserter(call.transactions[repaired(productId)]));
    }
    return call;
  });
}

void PLREngineWrapper::engineSubscriprtionPayment(std::string_view productId,
                                                  std::string_view transactionId) noexcept {
  submit("engineSubscriprtionPayment", [&] {
    return EngineSubscriptionPaymentCall{repaired(productId), repaired(transactionId)};
  });
}
