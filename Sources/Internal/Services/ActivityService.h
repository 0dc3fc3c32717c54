#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "Clock.h"
#include "Repositories.h"
#include "StateManager.h"

namespace pelorino {

/// Whether a new session begins at `now`: true without a `lastBackgroundTime`, or when it is more
/// than `sessionTimeout` ago. A clock that was set back continues the session. All in milliseconds.
[[nodiscard]] bool opensNewSession(std::optional<std::int64_t> lastBackgroundTime, std::int64_t now,
                                   std::int64_t sessionTimeout);

/// Tracks whether the application is in the foreground. Keeps the times of the session in the
/// active user.
///
/// Threads: the incomeQueue only.
class ActivityService final {
 public:
  ActivityService(StateManager& stateManager, UserRepository& userRepository, const Clock& clock);

  /// In memory only: false when a run begins.
  [[nodiscard]] bool isActive() const { return isActive_; }

  /// Returns whether a new session began; absent when the application was active already.
  std::optional<bool> startActivity();

  /// Returns the whole seconds since startActivity(); absent when the application was not active,
  /// or when the time of its start is missing, which is logged.
  std::optional<std::int64_t> stopActivity();

  /// Stores the present time as the last one in the foreground. If the process dies, the next start
  /// counts from it.
  void updateLastBackgroundTime();

 private:
  StateManager& stateManager_;
  UserRepository& userRepository_;
  const Clock& clock_;
  bool isActive_ = false;
};

}  // namespace pelorino
