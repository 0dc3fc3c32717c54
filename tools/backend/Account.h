#pragma once

#include <iosfwd>
#include <optional>
#include <vector>

#include "StoredEvents.h"
#include "Summary.h"

namespace pelorino::backend {

/// Prints what arrived as a table for people, and compares it with what the client has stored. True
/// when the wire checks found nothing and exactly the stored events have arrived.
[[nodiscard]] bool printAccount(std::ostream& out, const std::vector<UserAccount>& accounts,
                                const std::optional<EventMarks>& stored);

}  // namespace pelorino::backend
