#pragma once

#include <type_traits>
#include <utility>

#include "Core.h"
#include "PublicCall.h"

namespace pelorino {

/// Hands a call to the front of analytics; `makeCall` copies the host's arguments.
template <class Call>
void report(const char* operation, void (AnalyticsProxy::*tracking)(Call), auto makeCall) noexcept {
  publicCall(operation, [&] { (Core::shared()->analyticsProxy().*tracking)(makeCall()); });
}

/// Hands a completion handler to a getter of the front.
template <class Handler>
void ask(const char* operation, void (AnalyticsProxy::*getter)(Handler),
         std::type_identity_t<Handler> handler) noexcept {
  publicCall(operation, [&] { (Core::shared()->analyticsProxy().*getter)(std::move(handler)); });
}

}  // namespace pelorino
