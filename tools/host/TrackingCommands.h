#pragma once

#include "Command.h"

namespace pelorino::host {

/// The commands of what a host reports of the play: progress, payments, accruals, custom, social,
/// referral and ad events.
[[nodiscard]] CommandTable trackingCommands();

}  // namespace pelorino::host
