#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "Summary.h"

namespace pelorino::backend {

/// How often each custom event was reported, by name.
using ReportedEvents = std::map<std::string, int>;

/// Prints what arrived as a table for people, and compares it with what was reported. True when
/// the wire checks found nothing and every reported event arrived as often as it was reported.
[[nodiscard]] bool printAccount(std::ostream& out, const std::vector<UserAccount>& accounts,
                                const ReportedEvents& reported);

}  // namespace pelorino::backend
