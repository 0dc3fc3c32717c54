#include "VirtualScheduler.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

#include "Baton.h"

namespace pelorino {

/// A thread that takes part, and the step it is to begin with when it gets the baton.
struct VirtualScheduler::Participant {
  Baton baton;
  Source* step = nullptr;
  std::thread thread;
};

struct VirtualScheduler::Waiter {
  Participant& participant;
  std::string_view what;
  const Condition& ready;
  std::optional<Time> deadline;
  bool ended = false;
};

thread_local VirtualScheduler::Participant* VirtualScheduler::self_ = nullptr;

VirtualScheduler::VirtualScheduler()
    : root_(std::make_unique<Participant>()), holder_(root_.get()) {
  self_ = root_.get();
}

VirtualScheduler::~VirtualScheduler() {
  endThreads();
}

void VirtualScheduler::reset(std::uint64_t seed) {
  const std::vector<std::string> abandoned = abandon();
  sources_.clear();
  choices_.seed(seed);
  now_ = Time{0};
  failure_ = nullptr;
  maximumSteps = defaultMaximumSteps;
  if (abandoned.empty()) return;
  std::string message = "reset while blocks were waiting:";
  for (const std::string& wait : abandoned) message += " [" + wait + "]";
  throw std::logic_error(message);
}

void VirtualScheduler::enlist(Source& source) {
  requireBaton();
  if (std::find(sources_.begin(), sources_.end(), &source) == sources_.end()) {
    sources_.push_back(&source);
  }
}

VirtualScheduler::AlarmId VirtualScheduler::callAt(Time time, Block block) {
  requireBaton();
  const AlarmId id{time, alarmsMade_++};
  alarms_.emplace(id, std::move(block));
  return id;
}

bool VirtualScheduler::wait(std::string_view what, const Condition& ready,
                            std::optional<Time> timeout) {
  requireBaton();
  Participant& self = *self_;
  const bool isRoot = &self == root_.get();
  Waiter waiter{self, what, ready, std::nullopt};
  if (timeout && *timeout < Time::max() - now_) waiter.deadline = now_ + *timeout;
  waiters_.push_back(&waiter);
  if (isRoot) {
    limit_ = Time::max();
    steps_ = 0;
  }
  runOthers(self);
  if (isRoot) {
    std::erase(waiters_, &waiter);
    throwFailure();
    if (!waiter.ended) throw std::logic_error("can never end: " + std::string(what));
  }
  return ready();
}

void VirtualScheduler::run(Time limit) {
  requireRoot();
  limit_ = limit;
  steps_ = 0;
  runOthers(*root_);
  throwFailure();
  now_ = std::max(now_, limit);
}

void VirtualScheduler::fail(std::exception_ptr failure) {
  if (!failure_) failure_ = std::move(failure);
}

void VirtualScheduler::throwFailure() {
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

std::vector<std::string> VirtualScheduler::waits() const {
  std::vector<std::string> result;
  for (const Waiter* waiter : waiters_) result.emplace_back(waiter->what);
  return result;
}

std::vector<std::string> VirtualScheduler::abandon() {
  requireRoot();
  std::vector<std::string> abandoned = waits();
  abandoning_ = true;
  steps_ = 0;
  dropWork();
  // What the ending steps do, and what is released with them, may leave new work behind.
  const auto isLeft = [this] {
    return !waiters_.empty() || !alarms_.empty() ||
           std::any_of(sources_.begin(), sources_.end(), [](Source* s) { return s->canRun(); });
  };
  while (isLeft() && steps_ <= maximumSteps) {
    runOthers(*root_);
    dropWork();
  }
  abandoning_ = false;
  if (isLeft()) throwFailure();
  return abandoned;
}

void VirtualScheduler::dropWork() {
  // What is released may cancel alarms and remove sources.
  std::exchange(alarms_, {}).clear();
  for (Source* source : std::vector(sources_)) {
    if (std::find(sources_.begin(), sources_.end(), source) != sources_.end()) source->clear();
  }
}

void VirtualScheduler::requireBaton() const {
  if (self_ == nullptr || holder_.load() != self_) {
    throw std::logic_error("called on a thread that the deterministic system does not run");
  }
}

void VirtualScheduler::requireRoot() const {
  requireBaton();
  if (self_ != root_.get()) throw std::logic_error("called from a block; only a test may");
}

VirtualScheduler::Choice VirtualScheduler::choose() {
  for (;;) {
    if (++steps_ > maximumSteps) {
      fail(std::make_exception_ptr(std::logic_error("the work does not come to an end")));
      return {};
    }
    soundAlarms();
    const Choice choice = chooseAmongRunnable();
    if (choice.source != nullptr || choice.waiter != nullptr) return choice;
    const std::optional<Time> next = nextEvent();
    if (!next || *next > limit_) return {};
    now_ = *next;
  }
}

VirtualScheduler::Choice VirtualScheduler::chooseAmongRunnable() {
  runnable_.clear();
  for (Waiter* waiter : waiters_) {
    const bool isDue = waiter->deadline && *waiter->deadline <= now_;
    if (abandoning_ || isDue || waiter->ready()) runnable_.push_back({nullptr, waiter});
  }
  if (!abandoning_) {
    for (Source* source : sources_) {
      if (source->canRun()) runnable_.push_back({source, nullptr});
    }
  }
  if (runnable_.empty()) return {};
  // Not uniform_int_distribution: its sequence differs from library to library.
  const Choice choice = runnable_[choices_() % runnable_.size()];
  if (choice.waiter != nullptr) {
    choice.waiter->ended = true;
    std::erase(waiters_, choice.waiter);
  }
  return choice;
}

void VirtualScheduler::soundAlarms() {
  while (!alarms_.empty() && alarms_.begin()->first.first <= now_) {
    const Block block = std::move(alarms_.extract(alarms_.begin()).mapped());
    block();
  }
}

std::optional<VirtualScheduler::Time> VirtualScheduler::nextEvent() const {
  std::optional<Time> next;
  if (!alarms_.empty()) next = alarms_.begin()->first.first;
  for (const Waiter* waiter : waiters_) {
    if (waiter->deadline && (!next || *waiter->deadline < *next)) next = waiter->deadline;
  }
  return next;
}

/// Returns when it is this participant's turn again.
void VirtualScheduler::runOthers(Participant& self) {
  if (handOver(choose(), self)) self.baton.take();
}

/// False when the turn stays with `self`. From true on, the caller may touch its own baton only.
bool VirtualScheduler::handOver(const Choice& choice, Participant& self) {
  Participant* next = root_.get();
  if (choice.waiter != nullptr) next = &choice.waiter->participant;
  if (choice.source != nullptr) {
    next = &idleWorker();
    next->step = choice.source;
  }
  if (next == &self) return false;
  holder_ = next;
  next->baton.give();
  return true;
}

VirtualScheduler::Participant& VirtualScheduler::idleWorker() {
  if (idle_.empty()) {
    Participant& made = *workers_.emplace_back(std::make_unique<Participant>());
    made.thread = std::thread([this, &made] { work(made); });
    return made;
  }
  Participant& worker = *idle_.back();
  idle_.pop_back();
  return worker;
}

void VirtualScheduler::work(Participant& self) {
  self_ = &self;
  for (;;) {
    self.baton.take();
    if (self.step == nullptr) return;
    runSteps(self);
  }
}

void VirtualScheduler::runSteps(Participant& self) {
  Choice choice{std::exchange(self.step, nullptr), nullptr};
  while (choice.source != nullptr) {
    choice.source->runNext();
    choice = choose();
  }
  idle_.push_back(&self);
  handOver(choice, self);
}

void VirtualScheduler::endThreads() {
  for (Participant* worker : std::exchange(idle_, {})) {
    worker->baton.give();
    worker->thread.join();
  }
  for (std::unique_ptr<Participant>& worker : std::exchange(workers_, {})) {
    if (!worker->thread.joinable()) continue;
    worker->thread.detach();
    static_cast<void>(worker.release());  // Its thread sleeps on the baton.
  }
}

}  // namespace pelorino
