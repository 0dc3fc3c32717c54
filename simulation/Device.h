#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "BackendModel.h"
#include "DeterministicSystem.h"
#include "Dice.h"
#include "FaultyDisk.h"
#include "Life.h"
#include "Record.h"

namespace pelorino {

/// The world around the library in one life of its process: clock, disk, network, the application's
/// place on the screen, and how the life ends. It notes everything in the journal.
///
/// Threads: the one that made it, and those of the deterministic system; one at a time.
class Device final {
 public:
  Device(const LifePlan& plan, const Journal& journal);

  [[nodiscard]] BackendModel& backend() { return backend_; }
  [[nodiscard]] std::int64_t clock() const { return system_.clock().milliseconds(); }
  [[nodiscard]] std::int64_t sessionTimeout() const { return sessionTimeout_; }

  void setDisk(FaultyDisk::Fault fault, std::int64_t percent);
  void jumpClock(std::int64_t milliseconds) { system_.setTime(clock() + milliseconds); }

  void becomeActive();
  void goToBackground();
  void start(bool inBackground);

  /// Lets time pass, and notes how things are at its end.
  void sleep(std::chrono::milliseconds span);

  /// Calls the library, and has its queue note when it reaches the call and when it has run it.
  void call(const std::string& name, const std::function<void()>& make, const Row& arguments = {});

  /// The same for an operation with a handler, which `make` gives the function to: that notes what
  /// the handler has been given.
  using Answer = std::function<void(Row given)>;
  void ask(const std::string& name,
           const std::function<void(const std::string& number, const Answer& answer)>& make);

  void note(Record::Kind kind, Row fields) const;

  /// The process will be killed soon: somewhere within what it does next.
  void doom();
  [[noreturn]] void end(const std::string& how) const;

  /// Runs `work`; what it throws is the end.
  [[noreturn]] void endAfter(const std::function<void()>& work);

 private:
  void describeHost() const;
  /// Files of an earlier generation of the library, as they would lie there since before it.
  void leaveLegacyData();
  void noteStored(Record::Kind kind, const Row& fields);

  const LifePlan& plan_;
  const std::string keyStorePath_ = plan_.folder + "/keys";
  const Journal& journal_;
  DeterministicSystem& system_;
  Dice dice_;
  BackendModel backend_;
  std::int64_t calls_ = 0;
  std::int64_t sessionTimeout_;
  bool isPaused_ = false;   ///< Started in the background, and not active since.
  bool isLimited_ = false;  ///< Killed when a call takes more than so many blocks.
};

}  // namespace pelorino
