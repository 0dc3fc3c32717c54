#include "QueueWorker.h"

#include <algorithm>
#include <new>
#include <thread>
#include <utility>

#include "Executor.h"
#include "ExitGate.h"
#include "ForkedChild.h"
#include "LibraryThread.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// How often a wait looks whether the process has begun to exit, when no block will run any more.
constexpr auto exitCheckInterval = 100ms;

constexpr auto memoryRetryInterval = 10ms;

constinit thread_local const QueueWorker* currentWorker = nullptr;

}  // namespace

QueueWorker::QueueWorker(std::string label, std::shared_ptr<const ExceptionOutlet> outlet,
                         std::chrono::milliseconds idleTime)
    : label_(std::move(label)), outlet_(std::move(outlet)), idleTime_(idleTime) {}

const QueueWorker* QueueWorker::current() {
  return currentWorker;
}

void QueueWorker::add(Block block) {
  if (ForkedChild::isHere()) return;
  MutexLock lock(mutex_);
  if (isClosed_) return;
  waiting_.push_back(std::move(block));
  ++added_;
  ensureRunning(lock);
}

void QueueWorker::pause() {
  if (ForkedChild::isHere()) return;
  const MutexLock lock(mutex_);
  isPaused_ = true;
  setHeld();
  progress_.notifyAll();
}

void QueueWorker::resume() {
  if (ForkedChild::isHere()) return;
  MutexLock lock(mutex_);
  isPaused_ = false;
  setHeld();
  if (hasWork()) ensureRunning(lock);
}

void QueueWorker::close() noexcept {
  if (ForkedChild::isHere()) return;
  MutexLock lock(mutex_);
  isClosed_ = true;
  setHeld();
  const bool hasThread = hasThread_;
  progress_.notifyAll();
  work_.notifyOne();
  // Without the lock, which the check would want: a block may hold the last reference to something
  // that calls this queue again. Nobody adds to a closed one, and its batch is the thread's while
  // there is one.
  lock.unlock();
  waiting_.clear();
  if (!hasThread) batch_.clear();
}

void QueueWorker::waitUntilAllBlocksAreFinished() {
  if (currentWorker == this || ForkedChild::isHere()) return;
  MutexLock lock(mutex_);
  const std::uint64_t last = added_ + SerialQueue::awaitedNewcomers;
  waiters_.fetch_add(1, std::memory_order_seq_cst);
  const auto isOver = [&] {
    mutex_.assertHeld();
    if (finished() >= std::min(added_, last) || ExitGate::isClosed()) return true;
    if (isHeld_.load(std::memory_order_seq_cst)) return !isRunning();
    if (!hasThread_) ensureRunning(lock);
    return !hasThread_;
  };
  while (!isOver()) progress_.waitFor(lock, exitCheckInterval);
  waiters_.fetch_sub(1, std::memory_order_seq_cst);
}

void QueueWorker::schedule(std::shared_ptr<TimerSchedule::Entry> entry) {
  if (ForkedChild::isHere()) return;
  MutexLock lock(mutex_);
  const auto before = timers_.nextWakeUp();
  timers_.add(std::move(entry));
  if (!hasThread_ || !before || *timers_.nextWakeUp() < *before) ensureRunning(lock);
}

void QueueWorker::cancel(std::shared_ptr<TimerSchedule::Entry>& entry) {
  std::shared_ptr<TimerSchedule::Entry> cancelled;  // Destroyed after the lock is released.
  if (ForkedChild::isHere()) return;
  MutexLock lock(mutex_);
  if (!entry) return;
  cancelled.swap(entry);
  cancelled->isCancelled.store(true, std::memory_order_release);
  timers_.remove(cancelled);
  // A thread that sleeps until a timer that is gone would never become idle.
  if (hasThread_ && timers_.isEmpty()) ensureRunning(lock);
}

/// Starts or wakes the thread. The lock may be released afterwards: a thread that is woken while
/// the lock is held would go straight back to sleep on it. That release is the lock's own to know:
/// the check of locks takes it for held until the caller returns.
void QueueWorker::ensureRunning(MutexLock& lock) {
  if (isPaused_ || isClosed_) return;
  if (!hasThread_) {
    hasThread_ = startThread();
  } else if (isAsleep_) {
    isAsleep_ = false;
    lock.unlock();
    work_.notifyOne();
  }
}

bool QueueWorker::startThread() noexcept {
  try {
    return startLibraryThread(label_, [self = shared_from_this()] { self->runUntilIdle(); });
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void QueueWorker::runUntilIdle() {
  for (;;) {
    try {
      if (!takeBatch()) return;
      runBatch();
    } catch (const std::bad_alloc&) {
      // No memory for the blocks of timers: they stay due.
      std::this_thread::sleep_for(memoryRetryInterval);
    }
  }
}

/// False when the thread has to end.
bool QueueWorker::takeBatch() {
  MutexLock lock(mutex_);
  while (!isClosed_) {
    if (!isPaused_) {
      takeDueTimers();
      if (batch_.empty()) batch_.swap(waiting_);
      if (!batch_.empty()) return true;
    }
    if (!sleep(lock)) break;
  }
  if (isClosed_) {
    lock.unlock();
    batch_.clear();
    lock.lock();
  }
  hasThread_ = false;
  return false;
}

void QueueWorker::takeDueTimers() {
  if (timers_.isEmpty()) return;
  const std::size_t before = waiting_.size();
  try {
    timers_.takeDue(std::chrono::steady_clock::now(), waiting_);
  } catch (const std::bad_alloc&) {
    waiting_.resize(before);
    throw;
  }
  added_ += waiting_.size() - before;
}

/// False when the idle time has passed and nothing has come.
bool QueueWorker::sleep(MutexLock& lock) {
  isAsleep_ = true;
  bool isIdle = false;
  const auto wakeUp = isPaused_ ? std::nullopt : timers_.nextWakeUp();
  if (wakeUp) {
    work_.waitUntil(lock, *wakeUp);
  } else {
    isIdle = work_.waitFor(lock, idleTime_) == std::cv_status::timeout && isAsleep_ && !isClosed_;
  }
  isAsleep_ = false;
  return !isIdle;
}

void QueueWorker::runBatch() {
  while (!batch_.empty()) {
    ExitGate::parkIfClosed();
    if (!beginBlock()) return;
    currentWorker = this;
    Block block = std::move(batch_.front());
    batch_.pop_front();
    outlet_->run(block, label_);
    block = nullptr;  // Ends on its own queue, before it counts as finished.
    currentWorker = nullptr;
    endBlock();
  }
}

// A step is stored before isHeld_ or waiters_ is read, while pause() stores isHeld_, and a waiter
// waiters_, before it reads the steps. In the total order of seq_cst one side sees the other, so
// that no lock is needed between two blocks.

bool QueueWorker::beginBlock() {
  const std::uint64_t before = steps_.load(std::memory_order_relaxed);
  steps_.store(before + 1, std::memory_order_seq_cst);
  if (!isHeld_.load(std::memory_order_seq_cst)) return true;
  steps_.store(before, std::memory_order_seq_cst);
  wakeWaiters();
  return false;
}

void QueueWorker::endBlock() {
  steps_.store(steps_.load(std::memory_order_relaxed) + 1, std::memory_order_seq_cst);
  if (waiters_.load(std::memory_order_seq_cst) > 0) wakeWaiters();
}

void QueueWorker::wakeWaiters() {
  const MutexLock lock(mutex_);
  progress_.notifyAll();
}

void QueueWorker::setHeld() {
  isHeld_.store(isPaused_ || isClosed_, std::memory_order_seq_cst);
}

bool QueueWorker::hasWork() const {
  return added_ > finished() || !timers_.isEmpty();
}

bool QueueWorker::isRunning() const {
  return steps_.load(std::memory_order_seq_cst) % 2 == 1;
}

std::uint64_t QueueWorker::finished() const {
  return steps_.load(std::memory_order_seq_cst) / 2;
}

}  // namespace pelorino
