#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "BackendRepository.h"
#include "Executor.h"
#include "Guarded.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// Asks the backend for the configuration, and for the identifiers that it gives the device and its
/// user. Nothing waits for either answer.
///
/// Threads: operations and callbacks on the incomeQueue; exchanges on the configuration queues.
/// Callbacks are set before the first request and not changed afterwards.
class ConfigService final {
 public:
  ConfigService(Run& run, StateManager& stateManager, BackendProtocol& backend, Executor& executor);

  /// Called with a configuration from the backend, never with the default one.
  std::function<void(const Config&)> onSdkConfigUpdate;

  /// Told the new pelorinoId, present or not.
  std::function<void(std::optional<std::int64_t>)> onIdentifiersUpdate;

  /// Asks until an answer comes: again after 60 seconds, then after 60 more each time, up to ten
  /// minutes. The waits never get shorter in the life of this object, and end with it.
  void receiveSdkConfig();

  /// Begins a cycle of requests, for the user who is active now, unless one is running. The backend
  /// may put the answer off again and again.
  void receiveUserBackendIds();

 private:
  /// What a cycle asks for. It does not change across its attempts.
  struct IdentifiersRequest {
    std::string applicationKey;
    Identifiers identifiers;
    std::int64_t userIdKey;
  };

  /// On the configQueue.
  void requestConfig(const std::string& applicationKey, const Identifiers& identifiers,
                     const Versions& versions);
  void retryConfig();
  /// On the configQueue at first, on the configBackQueue for a repeat.
  void getBackendIdentifiers(std::int64_t attempt, const IdentifiersRequest& request);
  void retryIdentifiers(std::int64_t attempt, std::int64_t milliseconds,
                        const IdentifiersRequest& request);
  void stopRequestProcess();
  void applyIdentifiers(const BackendIdentifiers::Identifiers& identifiers, std::int64_t userIdKey);

  Run& run_;
  StateManager& stateManager_;
  BackendProtocol& backend_;
  Executor& executor_;
  // The configQueue only.
  std::int64_t sdkConfigAttempt_ = 1;
  std::unique_ptr<Timer> configRetry_;
  /// The pending repeat of the one cycle that runs, on whichever queue carries it. Guarded, since
  /// after a short wait the repeat may begin before its timer is kept here.
  Guarded<std::unique_ptr<Timer>> retryTimerTask_;
  /// A cycle is running, waits included. The incomeQueue only.
  bool backendIDsRequestInProcess_ = false;
};

}  // namespace pelorino
