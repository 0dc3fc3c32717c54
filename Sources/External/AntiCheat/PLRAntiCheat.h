#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRVerifyResponse.h>

#include <functional>
#include <string_view>

/// Has the backend verify a receipt of the store. What the host makes of the answer is its own
/// affair: the library stores nothing, sends no event and asks once.
///
/// The handler is called exactly once, with `internalError` where something failed on this side,
/// such as a library that has not been started or has been torn down since. It runs on a queue of
/// the library, never on the caller's thread, and holds up that queue while it runs. Only a forked
/// child, where the library does not work, calls none.
///
/// Threads: any. Nothing blocks, nothing throws.
class PLR_EXPORT PLRAntiCheat {
 public:
  using Handler = std::function<void(const PLRVerifyResponse& response)>;

  PLRAntiCheat() = delete;

  /// `receiptString` is the receipt as Base64; it goes out as it is. Empty, it is refused with a
  /// log line.
  static void verifyPayment(std::string_view receiptString, Handler completionHandler) noexcept;

  /// The same with the file that `PLRHostDescription::receiptFile` names, 16 MiB at most.
  /// `internalError` where there is none, and a log line where it cannot be read.
  static void verifyPayment(Handler completionHandler) noexcept;
};
