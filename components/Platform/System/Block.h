#pragma once

#include <functional>

namespace pelorino {

/// A piece of work for a queue, a timer or a notification. A block that needs an object holds it
/// by std::weak_ptr and does nothing if it is gone.
using Block = std::function<void()>;

}  // namespace pelorino
