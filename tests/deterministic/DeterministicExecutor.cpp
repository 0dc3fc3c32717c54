#include "DeterministicExecutor.h"

#include <algorithm>
#include <deque>

namespace pelorino {
namespace {

using std::chrono::milliseconds;

/// What a queue is made of. A step that waits keeps it when its queue is released meanwhile.
class Steps final : public VirtualScheduler::Source, public std::enable_shared_from_this<Steps> {
 public:
  Steps(VirtualScheduler& scheduler, DeterministicExecutor& executor, std::string label)
      : scheduler_(scheduler), executor_(executor), label_(std::move(label)) {}

  void add(Block block) {
    scheduler_.enlist(*this);
    blocks_.push_back(std::move(block));
    ++added_;
  }

  void setPaused(bool paused) {
    scheduler_.enlist(*this);
    paused_ = paused;
  }

  void waitUntilFinished() {
    if (isCurrent()) return;
    const auto self = shared_from_this();
    const VirtualScheduler::Condition isOver = [self,
                                                last = added_ + SerialQueue::awaitedNewcomers] {
      return self->ended_ >= std::min(self->added_, last) || (self->paused_ && !self->busy_);
    };
    scheduler_.wait("the end of the blocks of queue " + label_, isOver, std::nullopt);
  }

  [[nodiscard]] bool isCurrent() const { return current_ == this; }
  [[nodiscard]] bool canRun() const override { return !paused_ && !busy_ && !blocks_.empty(); }

  void runNext() override {
    const auto self = shared_from_this();
    busy_ = true;
    current_ = this;
    runFirst();
    current_ = nullptr;
    busy_ = false;
    ++ended_;
  }

  void clear() override {
    paused_ = false;
    ended_ += blocks_.size();
    std::exchange(blocks_, {}).clear();
  }

  void release() {
    scheduler_.remove(*this);
    clear();
  }

 private:
  /// What the block holds is released with it, still inside the step.
  void runFirst() {
    const Block block = std::move(blocks_.front());
    blocks_.pop_front();
    try {
      if (block) block();
    } catch (...) {
      executor_.report(label_);
    }
  }

  static thread_local const Steps* current_;

  VirtualScheduler& scheduler_;
  DeterministicExecutor& executor_;
  const std::string label_;
  std::deque<Block> blocks_;
  std::uint64_t added_ = 0;
  std::uint64_t ended_ = 0;
  bool paused_ = false;
  bool busy_ = false;
};

thread_local const Steps* Steps::current_ = nullptr;

class VirtualQueue final : public SerialQueue {
 public:
  explicit VirtualQueue(std::shared_ptr<Steps> steps) : steps_(std::move(steps)) {}
  ~VirtualQueue() override { steps_->release(); }

  void add(Block block) override { steps_->add(std::move(block)); }
  void pause() override { steps_->setPaused(true); }
  void resume() override { steps_->setPaused(false); }
  void waitUntilAllBlocksAreFinished() override { steps_->waitUntilFinished(); }
  [[nodiscard]] bool isCurrent() const override { return steps_->isCurrent(); }

 private:
  const std::shared_ptr<Steps> steps_;
};

class VirtualSemaphore final : public Semaphore {
 public:
  explicit VirtualSemaphore(VirtualScheduler& scheduler) : scheduler_(scheduler) {}

  void signal() override { ++*signals_; }

  [[nodiscard]] bool wait(milliseconds timeout) override {
    const auto signals = signals_;
    const bool came = *signals > 0 || scheduler_.wait(
                                          "a semaphore", [&] { return *signals > 0; }, timeout);
    if (came) --*signals;
    return came;
  }

 private:
  VirtualScheduler& scheduler_;
  const std::shared_ptr<std::uint64_t> signals_ = std::make_shared<std::uint64_t>(0);
};

/// A tick or a delayed block on its way: an alarm that adds a block to the main queue. Alarm and
/// block hold it weakly, the timer's owner holds it.
class Ticker final : public std::enable_shared_from_this<Ticker> {
 public:
  Ticker(VirtualScheduler& scheduler, SerialQueue& queue, Block tick)
      : scheduler_(scheduler),
        queue_(queue),
        tick_(std::make_shared<const Block>(std::move(tick))) {}

  void callAt(VirtualScheduler::Time time, Block sound) {
    alarm_ = scheduler_.callAt(time, std::move(sound));
  }

  /// One tick in the queue is enough: a main thread that is held up does not catch up.
  void addTick() {
    if (std::exchange(isQueued_, true)) return;
    queue_.add([weak = weak_from_this()] {
      if (const auto self = weak.lock()) self->runTick();
    });
  }

  void cancel() {
    scheduler_.cancel(alarm_);
    tick_ = nullptr;
  }

 private:
  void runTick() {
    isQueued_ = false;
    const auto tick = tick_;  // The tick may cancel its timer.
    if (tick && *tick) (*tick)();
  }

  VirtualScheduler& scheduler_;
  SerialQueue& queue_;
  std::shared_ptr<const Block> tick_;
  VirtualScheduler::AlarmId alarm_;
  bool isQueued_ = false;
};

class VirtualTimer final : public Timer {
 public:
  explicit VirtualTimer(std::shared_ptr<Ticker> ticker) : ticker_(std::move(ticker)) {}
  ~VirtualTimer() override { ticker_->cancel(); }
  void cancel() override { ticker_->cancel(); }

 private:
  const std::shared_ptr<Ticker> ticker_;
};

using Lateness = std::function<milliseconds()>;

void scheduleTicks(const std::shared_ptr<Ticker>& ticker, VirtualScheduler::Time due,
                   milliseconds period, const Lateness& lateness) {
  ticker->callAt(due + lateness(), [weak = std::weak_ptr(ticker), due, period, lateness] {
    const auto self = weak.lock();
    if (!self) return;
    self->addTick();
    scheduleTicks(self, due + period, period, lateness);
  });
}

}  // namespace

DeterministicExecutor::DeterministicExecutor(VirtualScheduler& scheduler)
    : scheduler_(scheduler), mainQueue_(makeQueue("main")) {}

std::unique_ptr<SerialQueue> DeterministicExecutor::makeQueue(std::string label) {
  return std::make_unique<VirtualQueue>(
      std::make_shared<Steps>(scheduler_, *this, std::move(label)));
}

std::unique_ptr<Semaphore> DeterministicExecutor::makeSemaphore() {
  return std::make_unique<VirtualSemaphore>(scheduler_);
}

std::unique_ptr<Timer> DeterministicExecutor::repeat(milliseconds period, milliseconds tolerance,
                                                     Block tick) {
  const milliseconds raised = std::max(period, minimumTimerPeriod);
  const auto ticker = std::make_shared<Ticker>(scheduler_, mainQueue(), std::move(tick));
  // Below one period, so that no tick overtakes the one before it.
  const milliseconds latest = std::clamp(tolerance, milliseconds{0}, raised - milliseconds{1});
  scheduleTicks(ticker, scheduler_.now() + raised, raised,
                [this, latest] { return lateness(latest); });
  return std::make_unique<VirtualTimer>(ticker);
}

std::unique_ptr<Timer> DeterministicExecutor::after(milliseconds delay, Block block) {
  const auto ticker = std::make_shared<Ticker>(scheduler_, mainQueue(), std::move(block));
  ticker->callAt(scheduler_.now() + std::max(delay, milliseconds{0}),
                 [weak = std::weak_ptr(ticker)] {
                   if (const auto self = weak.lock()) self->addTick();
                 });
  return std::make_unique<VirtualTimer>(ticker);
}

void DeterministicExecutor::reset(std::uint64_t seed) {
  random_.seed(seed);
  usesTolerance_ = false;
}

void DeterministicExecutor::report(const std::string& label) {
  if (!handler_) {
    scheduler_.fail(std::current_exception());
    return;
  }
  try {
    throw;
  } catch (const std::exception& exception) {
    handler_(label, exception.what());
  } catch (...) {
    handler_(label, "an exception of unknown type");
  }
}

milliseconds DeterministicExecutor::lateness(milliseconds tolerance) {
  if (!usesTolerance_) return milliseconds{0};
  return milliseconds(random_() % static_cast<std::uint64_t>(tolerance.count() + 1));
}

}  // namespace pelorino
