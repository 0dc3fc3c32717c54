#include <fmt/format.h>
#include <pelorino/PLRCustomEventParameters.h>

#include "AnyCodable.h"
#include "Core.h"
#include "Entry.h"
#include "HostText.h"
#include "Logger.h"

using namespace pelorino;

namespace {

/// Inserts the value, or writes a log line when the limit is reached. `makeValue` is called only to
/// insert: a refused text is not copied.
void insert(std::map<std::string, PLRCustomEventParameters::Value>& dictionary,
            std::string_view key, auto makeValue) {
  enter("add", [&] {
    const auto limit = Core::shared()->analyticsProxy().getCustomEventParamsCount();
    if (static_cast<std::int64_t>(dictionary.size()) >= limit) {
      Logger::writeLog(PLRLogLevel::error, [&] {
        return fmt::format(
            "[CustomEventParameters] Limit of [{}] is reached when adding a new parameter", limit);
      });
      return;
    }
    dictionary.insert_or_assign(repaired(key), makeValue());
  });
}

}  // namespace

void PLRCustomEventParameters::add(std::string_view key, std::string_view value) {
  insert(dictionary, key, [&] { return repaired(value); });
}

void PLRCustomEventParameters::addParameter(std::string_view key, Value value) {
  insert(dictionary, key, [&] { return std::move(value); });
}

std::string PLRCustomEventParameters::description() const {
  std::string text;
  for (const auto& [key, value] : dictionary) {
    if (!text.empty()) text += '\n';
    const auto plain = std::visit([](const auto& held) { return AnyCodable(held); }, value);
    text += fmt::format("key: {} value: {}", key, plain.description());
  }
  return text;
}
