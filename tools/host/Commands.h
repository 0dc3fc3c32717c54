#pragma once

#include <string_view>

#include "Command.h"

namespace pelorino::host {

/// Every operation of the public classes.
[[nodiscard]] const CommandTable& libraryCommands();

/// Runs one command line, such as {"op":"customEvent","eventName":"boss"}. A line that is no
/// valid command throws CommandError and has no effect.
void runCommand(std::string_view line);

}  // namespace pelorino::host
