#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "QueueManager.h"

namespace pelorino {

/// Deleter of a shared object. It destroys the object on the incomeQueue, whichever thread drops
/// the last reference: a thread of the host must not close files, nor destroy what the queue is
/// using.
struct EndsOnIncomeQueue {
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

/// One run of the library, from a start to its end. It owns what the start has made.
///
/// Work that comes back later, from a queue, a timer, the network or the host's store, comes back
/// through these operations. They keep the run while the work runs, and drop work that comes after
/// its end. So such work may refer to parts of the run by reference.
///
/// What outlives a run: the queues, the log, the backend's test address, the table of excluded
/// events, the uuids of DeliveredReports, and a run that has ended itself, for as long as an
/// exchange with the backend is under way in it.
///
/// Threads: any, but for end().
class Run : public std::enable_shared_from_this<Run> {
 public:
  virtual ~Run() = default;
  Run(const Run&) = delete;
  Run& operator=(const Run&) = delete;

  /// The work as a block for a later callback. It does nothing once the run has ended.
  template <class Work>
  [[nodiscard]] Block block(Work work) {
    return [weak = weak_from_this(), work = std::move(work)] {
      const auto run = weak.lock();
      if (run && !run->hasEnded()) work();
    };
  }

  /// Adds the work to a queue.
  template <class Work>
  void add(QueueManager& queue, Work work) {
    queue.addOperation(block(std::move(work)));
  }

  /// Adds work to a queue that is done even if the run ends before. The work does not keep the run.
  /// `lasts` in `work(lasts)` is false if the run has ended; then the work must not touch it. For a
  /// handler of the host that must be called in any case.
  template <class Work>
  void addTold(QueueManager& queue, Work work) {
    queue.addOperation([weak = weak_from_this(), work = std::move(work)]() mutable {
      const auto run = weak.lock();
      work(run && !run->hasEnded());
    });
  }

  /// A closure for a timer or a later answer: each call of it, on any thread, adds
  /// `work(arguments...)` to the incomeQueue.
  template <class Work>
  [[nodiscard]] auto callback(Work work) {
    return [weak = weak_from_this(), work = std::move(work)](auto... arguments) {
      QueueManager::incomeQueue().addOperation([weak, work, ... held = std::move(arguments)] {
        const auto run = weak.lock();
        if (run && !run->hasEnded()) work(held...);
      });
    };
  }

  /// Adds work to the incomeQueue that is done even if the run ends before. For reports that the
  /// backend has accepted: only this work knows of it.
  template <class Work>
  void addForSure(Work work) {
    QueueManager::incomeQueue().addOperation(
        [run = shared_from_this(), work = std::move(work)] { work(); });
  }

  [[nodiscard]] bool hasEnded() const { return hasEnded_; }

  /// A part of the run for those who hold it weakly.
  template <class Part>
  [[nodiscard]] std::weak_ptr<Part> weak(Part& part) {
    return std::shared_ptr<Part>(shared_from_this(), &part);
  }

 protected:
  Run() = default;

  /// On the incomeQueue.
  void end() { hasEnded_ = true; }

 private:
  std::atomic<bool> hasEnded_ = false;
};

}  // namespace pelorino
