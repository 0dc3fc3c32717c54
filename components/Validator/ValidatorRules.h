#pragma once

#include <cstddef>
#include <string_view>

#include "Limits.h"
#include "Resources.h"

/// The rules for the arguments of public operations. A rule takes the raw arguments and returns the
/// repaired ones, or nothing if it rejects the call. It writes the messages. All checks of a rule
/// run before its verdict. Rules are declared beside their calls; here is what they share.
///
/// If repairing makes two keys of a dictionary equal, the entry stays whose original key comes last
/// in order.
///
/// Threads: the incomeQueue.
namespace pelorino::ValidatorRules {

/// The entries whose key has content and whose amount is allowed, under their cut keys.
[[nodiscard]] Resources validateResorces(std::string_view method, std::string_view resourcesName,
                                         const Resources& resources, std::size_t maximalKeyLength,
                                         Interval allowed);

void notifyThatMethodExecutionWasCanceled(std::string_view method);

}  // namespace pelorino::ValidatorRules
