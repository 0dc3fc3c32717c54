#pragma once

#include <utility>

#include "Core.h"
#include "Entry.h"

namespace pelorino {

// The way of the public operations into the front of analytics. Any thread of the host; nothing
// throws.

/// Hands a call to the front. `makeCall` fills it with copies of the host's values.
void submit(const char* operation, auto makeCall) noexcept {
  enter(operation, [&] { Core::shared()->analyticsProxy().perform(makeCall()); });
}

/// Hands a query to the front. The host's handler gets the answer.
template <class Query, class Handler>
void ask(const char* operation, Handler handler) noexcept {
  enter(operation, [&] { Core::shared()->analyticsProxy().answer<Query>(std::move(handler)); });
}

}  // namespace pelorino
