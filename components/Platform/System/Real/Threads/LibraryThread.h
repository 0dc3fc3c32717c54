#pragma once

#include <functional>
#include <string>

namespace pelorino {

/// Starts a detached thread of the library. The host's signals never arrive on it, except those
/// that tell of a fault of the thread itself.
///
/// `name` is what debuggers show, cut to the 15 characters that the system keeps. False when the
/// system gives no thread now; `body` is then gone without having run.
[[nodiscard]] bool startLibraryThread(const std::string& name, std::function<void()> body) noexcept;

}  // namespace pelorino
