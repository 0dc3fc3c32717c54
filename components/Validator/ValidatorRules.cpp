#include "ValidatorRules.h"

#include <fmt/format.h>

#include <string>
#include <utility>

#include "Logger.h"
#include "Rule.h"

namespace pelorino {

Resources ValidatorRules::validateResorces(std::string_view method, std::string_view resourcesName,
                                           const Resources& resources, std::size_t maximalKeyLength,
                                           Interval allowed) {
  const std::string keyRest = fmt::format("] key of the {}", resourcesName);
  const Label valueLabel("The value of the ", resourcesName, "");
  Resources kept;
  for (const auto& [rawKey, value] : resources) {
    std::string key = rawKey;
    Rule entry(method);
    entry.namedText("The [", keyRest, key, maximalKeyLength);
    if (entry.passed()) entry.inInterval(valueLabel, value, allowed);
    if (entry.passed()) kept.insert_or_assign(std::move(key), value);
  }
  return kept;
}

void ValidatorRules::notifyThatMethodExecutionWasCanceled(std::string_view method) {
  Logger::writeLog(PLRLogLevel::error,
                   [&] { return fmt::format("Execution of the {} method was canceled!", method); });
}

}  // namespace pelorino
