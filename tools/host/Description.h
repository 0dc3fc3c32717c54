#pragma once

#include "Arguments.h"

namespace pelorino::host {

/// Calls PLRHost::describe with the fields of the object, named as in PLRHostDescription, and sets
/// "applicationState" if it is there. "integrityProbe" is what the probe answers, true or false.
/// Throws CommandError for an unknown field or a value of the wrong kind.
void describeHost(const Arguments& fields);

}  // namespace pelorino::host
