#include <fmt/format.h>
#include <pelorino/PLRCustomEventParameters.h>

#include "Core.h"
#include "Logger.h"
#include "PublicCall.h"
#include "Text.h"

using namespace pelorino;

void PLRCustomEventParameters::add(std::string_view key, std::string_view value) {
  publicCall("add", [&] { addParameter(key, repairUtf8(std::string(value))); });
}

void PLRCustomEventParameters::addParameter(std::string_view key, Value value) {
  publicCall("add", [&] {
    const auto limit = Core::shared()->analyticsProxy().getCustomEventParamsCount();
    if (static_cast<std::int64_t>(dictionary.size()) >= limit) {
      Logger::writeLog(PLRLogLevel::error, [&] {
        return fmt::format(
            "[CustomEventParameters] Limit of [{}] is reached when adding a new parameter", limit);
      });
      return;
    }
    dictionary.insert_or_assign(std::string(key), std::move(value));
  });
}

std::string PLRCustomEventParameters::description() const {
  std::string text;
  for (const auto& parameter : dictionary) {
    if (!text.empty()) text += '\n';
    std::visit(
        [&](const auto& value) {
          text += fmt::format("key: {} value: {}", parameter.first, value);
        },
        parameter.second);
  }
  return text;
}
