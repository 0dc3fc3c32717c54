#include "RealQueue.h"

#include <utility>

#include "QueueWorker.h"

namespace pelorino {

RealQueue::RealQueue(std::string label, std::shared_ptr<const ExceptionOutlet> outlet,
                     std::chrono::milliseconds idle)
    : worker_(std::make_shared<QueueWorker>(std::move(label), std::move(outlet), idle)) {}

RealQueue::~RealQueue() {
  worker_->close();
}

void RealQueue::add(Block block) {
  worker_->add(std::move(block));
}

void RealQueue::pause() {
  worker_->pause();
}

void RealQueue::resume() {
  worker_->resume();
}

void RealQueue::waitUntilAllBlocksAreFinished() {
  worker_->waitUntilAllBlocksAreFinished();
}

bool RealQueue::isCurrent() const {
  return QueueWorker::current() == worker_.get();
}

}  // namespace pelorino
