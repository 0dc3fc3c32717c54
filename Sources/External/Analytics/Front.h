#pragma once

#include <utility>

#include "Core.h"
#include "Entry.h"

namespace pelorino {

/// Hands a call to the front of analytics; `makeCall` fills it with copies of the host's values.
void submit(const char* operation, auto makeCall) noexcept {
  enter(operation, [&] { Core::shared()->analyticsProxy().perform(makeCall()); });
}

/// Hands a completion handler to the front of analytics, for the answer to a query.
template <class Query, class Handler>
void ask(const char* operation, Handler handler) noexcept {
  enter(operation, [&] { Core::shared()->analyticsProxy().answer<Query>(std::move(handler)); });
}

}  // namespace pelorino
