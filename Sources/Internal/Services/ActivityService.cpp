#include "ActivityService.h"

#include <cmath>
#include <utility>

#include "Logger.h"

namespace pelorino {

bool opensNewSession(std::optional<std::int64_t> lastBackgroundTime, std::int64_t now,
                     std::int64_t sessionTimeout) {
  if (!lastBackgroundTime) return true;
  std::int64_t gap = 0;
  // Stored times may be any number. A gap too large for 64 bits has the sign of `now`.
  if (__builtin_sub_overflow(now, *lastBackgroundTime, &gap)) return now > 0;
  return gap > sessionTimeout;
}

ActivityService::ActivityService(StateManager& stateManager, UserRepository& userRepository,
                                 const Clock& clock)
    : stateManager_(stateManager), userRepository_(userRepository), clock_(clock) {}

std::optional<bool> ActivityService::startActivity() {
  if (isActive_) {
    Logger::writeLog(PLRLogLevel::debug, "Activity has already started");
    return std::nullopt;
  }
  const std::int64_t now = clock_.milliseconds();
  const auto& user = stateManager_.getActiveUser();
  user->lastForegroundTime = now;
  isActive_ = true;
  const auto timeout = stateManager_.getActiveProject()->configuration.sessionTimeout;
  if (!opensNewSession(user->lastBackgroundTime, now, timeout)) return false;
  user->sessionId = now;
  user->lastBackgroundTime = now;  // A process that dies soon leaves a time to count from.
  userRepository_.update(*user);
  return true;
}

std::optional<std::int64_t> ActivityService::stopActivity() {
  if (!isActive_) return std::nullopt;
  const auto& user = stateManager_.getActiveUser();
  if (!user->lastForegroundTime) {
    Logger::writeLog(PLRLogLevel::error, "LastForegroundTime is lost!");
    return std::nullopt;
  }
  const std::int64_t now = clock_.milliseconds();
  // In floating point, since stored times may be any number: their difference must not overflow.
  const double seconds =
      (static_cast<double>(now) - static_cast<double>(*user->lastForegroundTime)) / 1000;
  user->lastBackgroundTime = now;
  userRepository_.update(*user);
  isActive_ = false;
  return static_cast<std::int64_t>(std::floor(seconds));
}

void ActivityService::updateLastBackgroundTime() {
  if (!isActive_) return;
  const auto& user = stateManager_.getActiveUser();
  user->lastBackgroundTime = clock_.milliseconds();
  userRepository_.update(*user);
}

}  // namespace pelorino
