#pragma once

#include "QueueManager.h"

namespace pelorino {

/// Deleter of a shared object whose end belongs on the incomeQueue: letting go of the last
/// reference on a thread of the host must not close files there.
struct EndedOnIncomeQueue {
  template <class Object>
  void operator()(Object* object) const noexcept {
    try {
      QueueManager& queue = QueueManager::incomeQueue();
      if (queue.isCurrent()) {
        delete object;
      } else {
        queue.addOperation([object] { delete object; });
      }
    } catch (...) {  // NOLINT(bugprone-empty-catch)
      // Without memory for the block the object stays: better than its end on this thread.
    }
  }
};

}  // namespace pelorino
