#include "MessagingLogicProxy.h"

#include <utility>

namespace pelorino {

template <class Work>
void MessagingLogicProxy::perform(const char* method, Work work) {
  post(method, [work = std::move(work)](MessagingLogic* logic) mutable {
    if (logic != nullptr) work(*logic);
  });
}

void MessagingLogicProxy::pushToken(std::string token, bool isAllowed) {
  perform("pushToken(_:_:)", [token = std::move(token), isAllowed](MessagingLogic& logic) mutable {
    logic.pushToken(std::move(token), isAllowed);
  });
}

void MessagingLogicProxy::pushOpened(std::int64_t timestamp, std::int64_t pushId,
                                     std::optional<std::string> button) {
  perform("pushOpened(_:_:_:)",
          [timestamp, pushId, button = std::move(button)](MessagingLogic& logic) mutable {
            logic.pushOpened(timestamp, pushId, std::move(button));
          });
}

void MessagingLogicProxy::getPushCategories(MessagingService::Callback callback) {
  perform("getPushCategories(_:)", [callback = std::move(callback)](MessagingLogic& logic) mutable {
    logic.getPushCategories(std::move(callback));
  });
}

}  // namespace pelorino
