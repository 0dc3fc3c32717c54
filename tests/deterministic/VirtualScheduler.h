#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Block.h"

namespace pelorino {

/// Decides what runs next, on virtual time: one step at a time, the choice among what could run
/// made by a seed. Time passes only when nothing can run.
///
/// Threads: exactly one runs at any time, the others sleep until it hands over to them. Steps run
/// on threads of a pool, each until its step waits; so a step that waits holds up no other. The
/// root thread, which made the object, runs no steps: it sleeps inside run() and wait() meanwhile.
/// Any other thread that calls in gets a std::logic_error. A step that waits while it holds a real
/// lock stops everything that needs the lock.
class VirtualScheduler final {
 public:
  /// Virtual time since the last reset.
  using Time = std::chrono::milliseconds;
  using Condition = std::function<bool()>;
  using AlarmId = std::pair<Time, std::uint64_t>;

  /// A list of steps that run one after the other.
  class Source {
   public:
    virtual ~Source() = default;
    [[nodiscard]] virtual bool canRun() const = 0;
    virtual void runNext() = 0;
    /// Drops the steps that have not begun, and whatever holds up new ones.
    virtual void clear() = 0;
  };

  VirtualScheduler();
  VirtualScheduler(const VirtualScheduler&) = delete;
  VirtualScheduler& operator=(const VirtualScheduler&) = delete;

  ~VirtualScheduler();

  /// Root only: time 0, no alarms, cleared sources. It ends waits as abandon() does, and then
  /// throws std::logic_error with the list of them.
  void reset(std::uint64_t seed);

  [[nodiscard]] Time now() const { return now_; }

  /// Has `source` looked at from now on, until the next reset. Idempotent.
  void enlist(Source& source);
  void remove(Source& source) { std::erase(sources_, &source); }

  /// Runs `block` on the scheduler as soon as it is `time`. It must be short and must not wait.
  AlarmId callAt(Time time, Block block);
  void cancel(AlarmId alarm) { alarms_.erase(alarm); }
  [[nodiscard]] std::size_t alarms() const { return alarms_.size(); }

  /// Lets others run until `ready` holds or `timeout` has passed; without a time-out, until it
  /// holds. True when it holds. `what` names the wait for messages.
  ///
  /// From the root thread, time passes as far as it takes, and a wait that cannot end throws
  /// std::logic_error. From a step, time passes within the limits of the root's own call.
  bool wait(std::string_view what, const Condition& ready, std::optional<Time> timeout);

  /// Root only: runs everything that is due up to `limit`, and then it is `limit`. Throws what
  /// fail() was told, and std::logic_error after more than maximumSteps steps.
  void run(Time limit);

  /// Keeps the first exception, for the root thread to throw when it runs again.
  void fail(std::exception_ptr failure);

  /// What the steps that have not ended wait for.
  [[nodiscard]] std::vector<std::string> waits() const;

  /// Root only: drops all work that has not begun, alarms included, and ends every wait as if its
  /// time had passed, so that the steps come to their end. Returns what they waited for.
  std::vector<std::string> abandon();

  /// Root only: joins the threads of the pool. One that is inside a step sleeps on for ever.
  void endThreads();

  static constexpr std::uint64_t defaultMaximumSteps = 10'000'000;
  std::uint64_t maximumSteps = defaultMaximumSteps;  ///< In one call of the root thread.

 private:
  struct Participant;
  struct Waiter;
  /// What runs next: a step, or the thread of a wait that ends; with neither, the root thread.
  struct Choice {
    Source* source = nullptr;
    Waiter* waiter = nullptr;
  };

  void requireBaton() const;
  void requireRoot() const;
  Choice choose();
  Choice chooseAmongRunnable();
  void soundAlarms();
  [[nodiscard]] std::optional<Time> nextEvent() const;
  bool handOver(const Choice& choice, Participant& self);
  Participant& idleWorker();
  void work(Participant& self);
  void runSteps(Participant& self);
  void runOthers(Participant& self);
  void dropWork();
  void throwFailure();

  static thread_local Participant* self_;

  std::unique_ptr<Participant> root_;
  std::vector<std::unique_ptr<Participant>> workers_;
  std::vector<Participant*> idle_;
  std::atomic<Participant*> holder_;

  std::mt19937_64 choices_;
  Time now_{0};
  Time limit_{0};
  std::uint64_t steps_ = 0;
  bool abandoning_ = false;
  std::exception_ptr failure_;

  std::vector<Source*> sources_;  ///< In the order of their first use since the reset.
  std::vector<Waiter*> waiters_;
  std::map<AlarmId, Block> alarms_;
  std::uint64_t alarmsMade_ = 0;
  std::vector<Choice> runnable_;  ///< Kept between steps for its memory.
};

}  // namespace pelorino
