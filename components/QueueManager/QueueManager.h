#pragma once

#include <memory>
#include <string>

#include "Executor.h"

namespace pelorino {

/// One named serial work queue. The seven queues of the library are statics: made on first use,
/// never destroyed, in use before and after the library has been torn down.
///
/// Threads: all operations from any thread.
class QueueManager final {
 public:
  enum class QualityOfService { standard = -1 };

  explicit QueueManager(std::string name, int maxConcurrentOperationCount = 1,
                        QualityOfService qualityOfService = QualityOfService::standard);

  /// Everything that touches state: start and teardown, public calls, life cycle, timer ticks, and
  /// the results that come back from the other queues. It is the lock of all that state.
  static QueueManager& incomeQueue();
  /// Stored reports, one at a time.
  static QueueManager& networkSerialQueue();
  /// Repeats of the request for backend identifiers.
  static QueueManager& configBackQueue();
  /// The requests for the configuration and for backend identifiers.
  static QueueManager& configQueue();
  /// Verification of receipts.
  static QueueManager& anticheatQueue();
  /// Events that are sent without being stored.
  static QueueManager& networkFlashQueue();
  /// The request for notification categories.
  static QueueManager& networkMessagingQueue();

  void addOperation(Block block) { queue_->add(std::move(block)); }

  /// Operations that wait or are added later wait for resume(); one that has begun runs to its end.
  void pause() { queue_->pause(); }
  void resume() { queue_->resume(); }

  /// Blocks the calling thread until the queue is empty; returns early where that could not end
  /// (see SerialQueue), and at once on the main thread, for which an operation may be waiting.
  void waitUntilAllOperationsAreFinished();

  /// True inside an operation of this queue, on its thread.
  [[nodiscard]] bool isCurrent() const { return queue_->isCurrent(); }

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] int maxConcurrentOperationCount() const { return maxConcurrentOperationCount_; }
  [[nodiscard]] QualityOfService qualityOfService() const { return qualityOfService_; }

 private:
  std::string name_;
  int maxConcurrentOperationCount_;
  QualityOfService qualityOfService_;
  std::unique_ptr<SerialQueue> queue_;
};

}  // namespace pelorino
