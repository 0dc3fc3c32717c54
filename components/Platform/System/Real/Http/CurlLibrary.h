#pragma once

namespace pelorino {

/// The one libcurl of the process, and OpenSSL below it.
namespace CurlLibrary {

/// Sets libcurl up at the first call, and prepares its clean-up at the end of this thread. Call it
/// inside the exit gate, never on a thread of the host: it reads configuration files. False if
/// libcurl cannot be used.
[[nodiscard]] bool enterThread();

}  // namespace CurlLibrary
}  // namespace pelorino
