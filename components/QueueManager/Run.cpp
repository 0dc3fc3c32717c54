#include "Run.h"

namespace pelorino {

void Run::destroyOnIncomeQueue(Run* run) noexcept {
  try {
    QueueManager& queue = QueueManager::incomeQueue();
    if (queue.isCurrent()) {
      delete run;
    } else {
      queue.addOperation([run] { delete run; });
    }
  } catch (...) {  // NOLINT(bugprone-empty-catch)
    // Without memory for the block the run stays: better than its end on this thread.
  }
}

}  // namespace pelorino
