#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRVerifyResponse.h>

#include <functional>
#include <string_view>

/// Asks the backend to verify a receipt of the store, once for each call. The library does nothing
/// else with the receipt or the answer: it stores nothing and sends no event.
///
/// The handler is called exactly once, with `internalError` if something fails in the library, for
/// example because it is not started. It runs on a queue of the library, never on the caller's
/// thread, and blocks that queue meanwhile. In a forked child, where the library does not work, it
/// is not called.
///
/// Call it from any thread; nothing blocks or throws.
class PLR_EXPORT PLRAntiCheat {
 public:
  using Handler = std::function<void(const PLRVerifyResponse& response)>;

  PLRAntiCheat() = delete;

  /// `receiptString` is the receipt as Base64. It is sent unchanged. An empty one is refused with a
  /// log line.
  static void verifyPayment(std::string_view receiptString, Handler completionHandler) noexcept;

  /// Verifies the file PLRHostDescription::receiptFile, of at most 16 MiB. Without a file the
  /// handler gets `internalError`; a file that cannot be read is also logged.
  static void verifyPayment(Handler completionHandler) noexcept;
};
