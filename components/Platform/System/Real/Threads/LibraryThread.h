#pragma once

#include <functional>
#include <string>

namespace pelorino {

/// Starts a detached thread of the library. It receives no signals except those for its own faults,
/// such as SIGSEGV.
///
/// `name` is what debuggers show, cut to the 15 characters that the system keeps. False when the
/// system gives no thread now; `body` is then gone without having run.
[[nodiscard]] bool startLibraryThread(const std::string& name, std::function<void()> body) noexcept;

}  // namespace pelorino
