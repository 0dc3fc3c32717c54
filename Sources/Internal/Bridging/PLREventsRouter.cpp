#include <pelorino/PLREventsRouter.h>

#include <utility>

#include "Core.h"
#include "Entry.h"
#include "JsonHelpers.h"
#include "Logger.h"
#include "Text.h"

using namespace pelorino;

namespace {

PLRLogLevel levelOf(std::int64_t level) {
  switch (level) {
    case 1:
      return PLRLogLevel::error;
    case 2:
      return PLRLogLevel::warning;
    case 3:
      return PLRLogLevel::info;
    default:
      return PLRLogLevel::debug;
  }
}

PLRMessagingCategory publicForm(const MessagingCategory& category) {
  PLRMessagingCategory form{.id = category.id, .buttons = {}, .json = encodeJson(category)};
  for (const auto& [id, text, activationMode] : category.buttons) {
    form.buttons.push_back({.id = id, .text = text, .activationMode = activationMode});
  }
  return form;
}

/// A category that has no JSON form stands empty in its place.
std::vector<PLRMessagingCategory> publicForms(const std::vector<MessagingCategory>& categories) {
  std::vector<PLRMessagingCategory> forms;
  for (const MessagingCategory& category : categories) {
    try {
      forms.push_back(publicForm(category));
    } catch (const PLRError&) {
      forms.emplace_back();
    }
  }
  return forms;
}

}  // namespace

void PLREventsRouter::getMessagingCategories(CategoriesHandler with) noexcept {
  enter("getMessagingCategories", [&] {
    Core::shared()->messagingProxy().getPushCategories(MessagingService::Callback(
        [handler = std::move(with)](const MessagingService::Categories& categories) {
          if (handler) handler(publicForms(categories));
        }));
  });
}

void PLREventsRouter::sendPushToken(std::string_view with, bool andFlag) noexcept {
  enter("sendPushToken", [&] {
    Core::shared()->messagingProxy().pushToken(repairUtf8(std::string(with)), andFlag);
  });
}

void PLREventsRouter::sendPushOpened(std::int64_t with, std::int64_t withID,
                                     std::optional<std::string_view> withButton) noexcept {
  enter("sendPushOpened", [&] {
    std::optional<std::string> button;
    if (withButton) button = repairUtf8(std::string(*withButton));
    Core::shared()->messagingProxy().pushOpened(with, withID, std::move(button));
  });
}

void PLREventsRouter::sendLogMessage(std::int64_t with, std::string_view withMessage) noexcept {
  enter("sendLogMessage",
        [&] { Logger::writeLog(levelOf(with), [&] { return std::string(withMessage); }); });
}

bool PLREventsRouter::isAnalyticsInited() noexcept {
  return enter("isAnalyticsInited", false, [] { return Core::shared()->isInitialized(); });
}
