#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "ExceptionOutlet.h"
#include "Executor.h"

namespace pelorino {

class QueueWorker;

/// A serial queue with a thread of its own. Destroying it drops what waits; a running block ends,
/// and may itself be what destroys the queue.
class RealQueue : public SerialQueue {
 public:
  /// Long enough that a played game does not start a thread for every report, short enough that
  /// queues which work at start only do not keep theirs.
  static constexpr std::chrono::milliseconds idleTime{10000};

  RealQueue(std::string label, std::shared_ptr<const ExceptionOutlet> outlet,
            std::chrono::milliseconds idle = idleTime);
  ~RealQueue() override;
  RealQueue(const RealQueue&) = delete;
  RealQueue& operator=(const RealQueue&) = delete;

  void add(Block block) override;
  void pause() override;
  void resume() override;
  void waitUntilAllBlocksAreFinished() override;
  [[nodiscard]] bool isCurrent() const override;

 protected:
  [[nodiscard]] const std::shared_ptr<QueueWorker>& worker() const { return worker_; }

 private:
  const std::shared_ptr<QueueWorker> worker_;
};

}  // namespace pelorino
