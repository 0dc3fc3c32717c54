#include "ConfigService.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <utility>
#include <variant>

#include "Logger.h"
#include "QueueManager.h"

namespace pelorino {
namespace {

constexpr std::int64_t sdkConfigTimeout = 60;   ///< Seconds that each failure adds to the wait.
constexpr std::int64_t longestConfigWait = 10;  ///< Times sdkConfigTimeout.

template <class... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace

ConfigService::ConfigService(Run& run, StateManager& stateManager, BackendProtocol& backend,
                             Executor& executor)
    : run_(run), stateManager_(stateManager), backend_(backend), executor_(executor) {}

void ConfigService::receiveSdkConfig() {
  run_.add(QueueManager::configQueue(),
           [this, key = stateManager_.getActiveProject()->applicationKey,
            identifiers = stateManager_.getIdentifiers(*stateManager_.getActiveUser()),
            versions = stateManager_.getVersion()] { requestConfig(key, identifiers, versions); });
}

void ConfigService::requestConfig(const std::string& applicationKey, const Identifiers& identifiers,
                                  const Versions& versions) {
  Logger::writeLog(PLRLogLevel::debug, "Trying to get analytics configuration from the server");
  ConfigAnswer answer =
      backend_.ask(BackendRepository::requestConfig, applicationKey, identifiers, versions).answer;
  if (answer.isDefault) {
    retryConfig();
    return;
  }
  run_.add(QueueManager::incomeQueue(), [this, config = std::move(answer.config)] {
    if (onSdkConfigUpdate) onSdkConfigUpdate(config);
  });
}

void ConfigService::retryConfig() {
  const std::int64_t seconds = sdkConfigAttempt_ * sdkConfigTimeout;
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format(
        "Failed to get analytics configuration, using the default configuration and retrying after "
        "{} seconds",
        seconds);
  });
  sdkConfigAttempt_ = std::min(sdkConfigAttempt_ + 1, longestConfigWait);
  // Starts on the incomeQueue again: only there may the project and the user be read.
  configRetry_ =
      executor_.after(std::chrono::seconds(seconds), run_.callback([this] { receiveSdkConfig(); }));
}

void ConfigService::receiveUserBackendIds() {
  const User& user = *stateManager_.getActiveUser();
  if (backendIDsRequestInProcess_) {
    Logger::writeLog(PLRLogLevel::debug, [&] {
      return fmt::format("Receiving operation for user backend identifiers [{}] has been canceled",
                         user.userId.value_or(""));
    });
    return;
  }
  backendIDsRequestInProcess_ = true;
  const IdentifiersRequest request{
      .applicationKey = stateManager_.getActiveProject()->applicationKey,
      .identifiers = stateManager_.getIdentifiers(user),
      .userIdKey = user.idKey};
  run_.add(QueueManager::configQueue(), [this, request] {
    retryTimerTask_.set(nullptr);  // The timer of the last cycle, which has fired.
    getBackendIdentifiers(1, request);
  });
}

void ConfigService::getBackendIdentifiers(std::int64_t attempt, const IdentifiersRequest& request) {
  const BackendIdentifiers::Outcome outcome =
      backend_
          .ask(BackendRepository::requestIdentification, request.applicationKey,
               request.identifiers, {attempt})
          .answer;
  std::visit(Overloaded{[&](const BackendIdentifiers::Identifiers& identifiers) {
                          run_.add(QueueManager::incomeQueue(),
                                   [this, identifiers, userIdKey = request.userIdKey] {
                                     applyIdentifiers(identifiers, userIdKey);
                                   });
                        },
                        [&](const BackendIdentifiers::RetryAfter& retry) {
                          retryIdentifiers(attempt, retry.retryAfter, request);
                        },
                        [&](const BackendIdentifiers::Error& error) {
                          Logger::writeLog(PLRLogLevel::error,
                                           [&] { return "BackendIdentifiers: " + error.text; });
                          stopRequestProcess();
                        },
                        [&](BackendIdentifiers::DoNotRetry) {
                          Logger::writeLog(PLRLogLevel::debug, "BackendIdentifiers: doNotRetry");
                          stopRequestProcess();
                        }},
             outcome);
}

void ConfigService::retryIdentifiers(std::int64_t attempt, std::int64_t milliseconds,
                                     const IdentifiersRequest& request) {
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("BackendIdentifiers: let's retry after: {}", milliseconds);
  });
  // The backend may send any number. Requests must not follow each other without a pause, and the
  // wait must fit the clock.
  constexpr std::chrono::milliseconds shortestWait{100};
  constexpr std::chrono::milliseconds longestWait = std::chrono::days(3650);
  const auto wait = std::clamp(std::chrono::milliseconds(milliseconds), shortestWait, longestWait);
  retryTimerTask_.update([&](std::unique_ptr<Timer>& task) {
    task = executor_.after(wait, run_.block([this, attempt, request] {
      run_.add(QueueManager::configBackQueue(),
               [this, attempt, request] { getBackendIdentifiers(attempt + 1, request); });
    }));
  });
}

void ConfigService::stopRequestProcess() {
  run_.add(QueueManager::incomeQueue(), [this] { backendIDsRequestInProcess_ = false; });
}

void ConfigService::applyIdentifiers(const BackendIdentifiers::Identifiers& identifiers,
                                     std::int64_t userIdKey) {
  backendIDsRequestInProcess_ = false;  // First: a new cycle may have to begin below.
  if (!stateManager_.getActiveProject()->trackingAvailable) {
    Logger::writeLog(PLRLogLevel::info,
                     "BackendIdentifiers: The query result was not applied. Tracking is Disabled");
    return;
  }
  const User& user = *stateManager_.getActiveUser();
  if (user.idKey != userIdKey) {
    Logger::writeLog(PLRLogLevel::debug,
                     "In the process of receiving backendidentifiers from the server, the user was "
                     "changed. Request the identifiers again.");
    receiveUserBackendIds();
    return;
  }
  stateManager_.updateDeviceIdentifiers(identifiers.pelorinoId, identifiers.crossPlatformPelorinoId,
                                        identifiers.pelorinoIdTimestamp);
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("For [{}] user the updated backendIdentifiers are:\n{}",
                       user.userId.value_or(""), identifiers.description());
  });
  if (onIdentifiersUpdate) onIdentifiersUpdate(identifiers.pelorinoId);
}

}  // namespace pelorino
