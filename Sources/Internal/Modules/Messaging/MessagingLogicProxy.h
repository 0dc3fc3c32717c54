#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "MessagingLogic.h"
#include "ModuleFront.h"

namespace pelorino {

/// The front of messaging. A block of it refuses the call if the library isn't started, else calls
/// the logic.
///
/// Threads: any. The logic is given on the incomeQueue.
class MessagingLogicProxy final : public ModuleFront<MessagingLogic> {
 public:
  /// Null takes it away, and calls are refused again.
  void setMessagingLogic(MessagingLogic* messagingLogic) { setLogic(messagingLogic); }

  void pushToken(std::string token, bool isAllowed);
  void pushOpened(std::int64_t timestamp, std::int64_t pushId, std::optional<std::string> button);
  /// The callback is not called where the library isn't started.
  void getPushCategories(MessagingService::Callback callback);

 private:
  template <class Work>
  void perform(const char* method, Work work);
};

}  // namespace pelorino
