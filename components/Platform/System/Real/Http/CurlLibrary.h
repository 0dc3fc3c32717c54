#pragma once

namespace pelorino {

/// The process's one libcurl and what lies below it.
namespace CurlLibrary {

/// Sets the library up, the first time on any thread, and makes ready to end on this thread. Call
/// it inside the gate of the exit, never on a thread of the host: it reads configuration files.
/// False when it cannot be used.
[[nodiscard]] bool enterThread();

}  // namespace CurlLibrary
}  // namespace pelorino
