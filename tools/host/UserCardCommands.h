#pragma once

#include "Command.h"

namespace pelorino::host {

/// The commands of the user's card, "userCard." and the name of the operation.
[[nodiscard]] CommandTable userCardCommands();

}  // namespace pelorino::host
