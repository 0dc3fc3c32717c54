#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Clock.h"
#include "Repositories.h"
#include "StateManager.h"

namespace pelorino {

/// Whether a session that was last seen active at `lastBackgroundTime` ends before `now`. A gap of
/// exactly the time-out continues it, and so does a clock that was set back. Milliseconds.
[[nodiscard]] bool opensNewSession(std::optional<std::int64_t> lastBackgroundTime, std::int64_t now,
                                   std::int64_t sessionTimeout);

/// Keeps the flag of activity and the session's times on the active user.
///
/// Threads: the incomeQueue only.
class ActivityService final {
 public:
  ActivityService(StateManager& stateManager, UserRepository& userRepository, const Clock& clock);

  /// In memory only: false at each start of the process.
  [[nodiscard]] bool isActive() const { return isActive_; }

  /// Whether a new session was opened; absent when activity runs already.
  std::optional<bool> startActivity();

  /// Whole seconds of this stay in the foreground; absent when none was running.
  std::optional<std::int64_t> stopActivity();

  /// Notes that the user is still there, so that a process that dies has a time to count from.
  void updateLastBackgroundTime();

 private:
  StateManager& stateManager_;
  UserRepository& userRepository_;
  const Clock& clock_;
  bool isActive_ = false;
};

}  // namespace pelorino
