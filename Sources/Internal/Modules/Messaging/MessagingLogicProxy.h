#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "MessagingLogic.h"
#include "ModuleFront.h"

namespace pelorino {

/// The front of messaging. Each call becomes a block on the incomeQueue. The block refuses the call
/// if the library is not started; otherwise it calls the logic.
///
/// Threads: any, except setMessagingLogic(): the incomeQueue only.
/// Errors:  refused calls are logged.
class MessagingLogicProxy final : public ModuleFront<MessagingLogic> {
 public:
  /// Sets the logic, which is borrowed. With null, calls are refused.
  void setMessagingLogic(MessagingLogic* messagingLogic) { setLogic(messagingLogic); }

  void pushToken(std::string token, bool isAllowed);
  void pushOpened(std::int64_t timestamp, std::int64_t pushId, std::optional<std::string> button);
  /// The callback is not called when the library is not started.
  void getPushCategories(MessagingService::Callback callback);

 private:
  template <class Work>
  void perform(const char* method, Work work);
};

}  // namespace pelorino
