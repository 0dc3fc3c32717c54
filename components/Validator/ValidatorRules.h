#pragma once

#include <cstddef>
#include <string_view>

#include "Limits.h"
#include "Resources.h"

/// What each public operation demands of its arguments. A rule takes the raw arguments and gives
/// the repaired ones, or nothing when the call is rejected; the messages are written here. All
/// checks of a rule run before its verdict. Rules are declared beside the calls they are for; here
/// is what they share.
///
/// Entries of a dictionary whose keys become equal overwrite each other: the later one in the order
/// of the original keys stays.
///
/// Threads: the incomeQueue.
namespace pelorino::ValidatorRules {

/// The entries whose key has content and whose amount is allowed, under their cut keys.
[[nodiscard]] Resources validateResorces(std::string_view method, std::string_view resourcesName,
                                         const Resources& resources, std::size_t maximalKeyLength,
                                         Interval allowed);

void notifyThatMethodExecutionWasCanceled(std::string_view method);

}  // namespace pelorino::ValidatorRules
