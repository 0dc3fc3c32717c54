#include "QueueManager.h"

#include <utility>

#include "Logger.h"
#include "System.h"

namespace pelorino {
namespace {

void logEscapedException(std::string_view queue, std::string_view what) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return "[Queue] A block on " + std::string(queue) +
           " ended with an error: " + std::string(what);
  });
}

Executor& executor() {
  static Executor& shared = [&]() -> Executor& {
    Executor& current = System::current().executor();
    current.setExceptionHandler(logEscapedException);
    return current;
  }();
  return shared;
}

}  // namespace

QueueManager::QueueManager(std::string name, int maxConcurrentOperationCount,
                           QualityOfService qualityOfService)
    : name_(std::move(name)),
      maxConcurrentOperationCount_(maxConcurrentOperationCount),
      qualityOfService_(qualityOfService),
      queue_(executor().makeQueue(name_)) {}

void QueueManager::waitUntilAllOperationsAreFinished() {
  if (!executor().mainQueue().isCurrent()) queue_->waitUntilAllBlocksAreFinished();
}

// The label of networkSerialQueue is its own: label and member differ there.
QueueManager& QueueManager::incomeQueue() {
  static QueueManager& queue = *new QueueManager("com.pelorino.incomeQueue");
  return queue;
}

QueueManager& QueueManager::networkSerialQueue() {
  static QueueManager& queue = *new QueueManager("com.pelorino.networkQueue");
  return queue;
}

QueueManager& QueueManager::configBackQueue() {
  static QueueManager& queue = *new QueueManager("com.pelorino.configBackQueue");
  return queue;
}

QueueManager& QueueManager::configQueue() {
  static QueueManager& queue = *new QueueManager("com.pelorino.configQueue");
  return queue;
}

QueueManager& QueueManager::anticheatQueue() {
  static QueueManager& queue = *new QueueManager("com.pelorino.anticheatQueue");
  return queue;
}

QueueManager& QueueManager::networkFlashQueue() {
  static QueueManager& queue = *new QueueManager("com.pelorino.networkFlashQueue");
  return queue;
}

QueueManager& QueueManager::networkMessagingQueue() {
  static QueueManager& queue = *new QueueManager("com.pelorino.networkMessagingQueue");
  return queue;
}

}  // namespace pelorino
