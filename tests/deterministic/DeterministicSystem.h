#pragma once

#include <map>

#include "DeterministicExecutor.h"
#include "DeterministicHttp.h"
#include "FakeFacts.h"
#include "MemoryKeyStore.h"
#include "System.h"
#include "VirtualScheduler.h"

namespace pelorino {

/// A system for tests: virtual time, one block at a time, the order among queues chosen by a seed,
/// the network a function. The same seed and the same calls give the same run.
///
/// Nothing runs by itself: add() from the test's thread only enqueues. Work runs inside
/// runUntilIdle(), advance() and the blocking waits of the test's own thread; those let time pass
/// as far as it takes. Files and the database are real.
///
/// Threads: the one that called reset() last, and the blocks themselves.
class DeterministicSystem final : public System {
 public:
  /// Made and installed with the first call, which must come before anything else of the library.
  static DeterministicSystem& instance();

  /// A new start: time 0, no work, default answers, empty key stores. Queues that exist stay, as
  /// the library's live as long as the process, emptied and resumed. Throws std::logic_error when a
  /// block was still waiting, after it has ended that wait.
  void reset(std::uint64_t seed = 1);

  /// Runs everything that can run without time passing; exchanges without latency complete.
  void runUntilIdle() { scheduler_.run(scheduler_.now()); }

  /// Lets that much time pass and runs what falls due meanwhile, in the order of time.
  void advance(std::chrono::milliseconds span) { scheduler_.run(scheduler_.now() + span); }

  /// Time that has passed since the reset.
  [[nodiscard]] std::chrono::milliseconds elapsed() const { return scheduler_.now(); }

  /// The device clock jumps to `milliseconds` since 1970; timers and waits do not notice.
  void setTime(std::int64_t milliseconds);

  /// Repeating timers and delayed blocks that have not been cancelled and are still to fall due.
  [[nodiscard]] std::size_t pendingTimers() const { return scheduler_.alarms(); }

  /// What blocks are waiting for, in words.
  [[nodiscard]] std::vector<std::string> waits() const { return scheduler_.waits(); }

  /// As if the process had died, as far as that goes: drops all work and timers and ends every wait
  /// as if its time had passed. Returns what was being waited for.
  std::vector<std::string> abandon() { return scheduler_.abandon(); }

  /// More steps than this in one call of the test are taken for an endless loop: std::logic_error.
  void setMaximumSteps(std::uint64_t steps) { scheduler_.maximumSteps = steps; }

  /// What is stored at a path, also to make the store fail. Stores see changes at once.
  [[nodiscard]] MemoryKeyStore::Values& keyStoreValues(const std::string& path);

  Clock& clock() override { return clock_; }
  DeterministicExecutor& executor() override { return executor_; }
  DeterministicHttp& http() override { return http_; }
  NotificationCenter& notifications() override { return *notifications_; }
  Random& random() override { return random_; }
  Files& files() override { return *files_; }
  FakeFacts& facts() override { return facts_; }
  [[nodiscard]] std::unique_ptr<KeyStore> openKeyStore(const std::string& path) override;

  /// The device clock after a reset.
  static constexpr std::int64_t startTime = 1'700'000'000'000;

 private:
  class DeviceClock final : public Clock {
   public:
    explicit DeviceClock(const VirtualScheduler& scheduler) : scheduler_(scheduler) {}
    [[nodiscard]] std::int64_t milliseconds() const override {
      return offset + scheduler_.now().count();
    }
    std::int64_t offset = startTime;

   private:
    const VirtualScheduler& scheduler_;
  };

  class SeededRandom final : public Random {
   public:
    [[nodiscard]] std::string uuid() override;
    std::mt19937_64 generator;
  };

  DeterministicSystem();
  [[nodiscard]] std::shared_ptr<MemoryKeyStore::Values> keyStoreAt(const std::string& path);

  VirtualScheduler scheduler_;
  DeviceClock clock_{scheduler_};
  DeterministicExecutor executor_{scheduler_};
  DeterministicHttp http_{scheduler_};
  SeededRandom random_;
  FakeFacts facts_;
  std::unique_ptr<NotificationCenter> notifications_;
  std::unique_ptr<Files> files_;
  std::map<std::string, std::shared_ptr<MemoryKeyStore::Values>> keyStores_;
};

}  // namespace pelorino
