#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>

#include <utility>

#include "Base64.h"
#include "Core.h"
#include "Logger.h"
#include "PublicCall.h"
#include "SdkConstraints.h"
#include "Text.h"

using namespace pelorino;

std::function<void(PLRLogLevel, const std::string&)>
PLREngineWrapper::engineLoggerMessageClosure() {
  return publicCall("engineLoggerMessageClosure", Logger::EngineClosure(),
                    Logger::engineLoggerMessageClosure);
}

void PLREngineWrapper::setEngineLoggerMessageClosure(
    std::function<void(PLRLogLevel, const std::string&)> closure) noexcept {
  publicCall("engineLoggerMessageClosure",
             [&] { Logger::setEngineLoggerMessageClosure(std::move(closure)); });
}

void PLREngineWrapper::destroySDK() noexcept {
  publicCall("destroySDK", [] { Core::destroy(); });
}

void PLREngineWrapper::setSDKVersion(std::string_view version) noexcept {
  publicCall("setSDKVersion",
             [&] { SdkConstraints::setSdkVersion(repairUtf8(std::string(version))); });
}

void PLREngineWrapper::enableEditorMode() noexcept {
  publicCall("enableEditorMode", [] { Core::shared()->enableEditorMode(); });
}

std::string PLREngineWrapper::unitySdkFolderPath() {
  return PLRAnalytics::sdkFolderPath();
}

void PLREngineWrapper::testString(std::string_view value) noexcept {
  publicCall("testString", [&] {
    Logger::writeLog(PLRLogLevel::debug, [&] {
      return "[EngineWrapper] Test string:\n\tOrigin: [" + std::string(value) +
             "]\n\tBase64: [Optional(\"" + base64(value) + "\")]";
    });
  });
}

void PLREngineWrapper::engineSubscriptionHistory(
    const std::map<std::string, std::vector<std::string>>& transactions) noexcept {
  publicCall("engineSubscriptionHistory", [&] {
    EngineSubscriptionHistoryCall call;
    for (const auto& [productId, ids] : transactions) {
      auto& copied = call[repairUtf8(productId)];
      for (const std::string& id : ids) copied.push_back(repairUtf8(id));
    }
    Core::shared()->analyticsProxy().subscriptionHistory(std::move(call));
  });
}

void PLREngineWrapper::engineSubscriprtionPayment(std::string_view productId,
                                                  std::string_view transactionId) noexcept {
  publicCall("engineSubscriprtionPayment", [&] {
    Core::shared()->analyticsProxy().subscriptionPayment(EngineSubscriptionPaymentCall{
        repairUtf8(std::string(productId)), repairUtf8(std::string(transactionId))});
  });
}
