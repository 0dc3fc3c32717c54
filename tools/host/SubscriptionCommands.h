#pragma once

#include "Command.h"

namespace pelorino::host {

/// The commands of the store and of subscriptions, those of engines included.
[[nodiscard]] CommandTable subscriptionCommands();

}  // namespace pelorino::host
