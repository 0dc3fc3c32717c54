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

/// Asks the backend for the configuration, and for the identifiers of the device and its user.
/// Nothing waits for the answers.
///
/// Threads: public operations and callbacks on the incomeQueue; exchanges with the backend on the
/// configQueue and the configBackQueue. Set the callbacks before the first request.
/// Errors:  failed requests are logged and repeated; see below.
class ConfigService final {
 public:
  ConfigService(Run& run, StateManager& stateManager, BackendProtocol& backend, Executor& executor);

  /// Called with each configuration from the backend, never with the default one.
  std::function<void(const Config&)> onSdkConfigUpdate;

  /// Called with the new pelorinoId, which may be absent.
  std::function<void(std::optional<std::int64_t>)> onIdentifiersUpdate;

  /// Asks for the configuration until an answer comes. The first repeat waits 60 seconds; each
  /// failure adds 60 seconds, up to ten minutes. An answer does not shorten the wait again.
  void receiveSdkConfig();

  /// Begins a cycle of requests for the user who is active now, unless a cycle is running. The
  /// backend may answer with a time to wait, as often as it likes; any other failure ends the
  /// cycle.
  void receiveUserBackendIds();

 private:
  /// What a cycle asks for. All its attempts ask for the same.
  struct IdentifiersRequest {
    std::string applicationKey;
    Identifiers identifiers;
    std::int64_t userIdKey;
  };

  /// On the configQueue.
  void requestConfig(const std::string& applicationKey, const Identifiers& identifiers,
                     const Versions& versions);
  void retryConfig();
  /// The first attempt on the configQueue, repeats on the configBackQueue.
  void getBackendIdentifiers(std::int64_t attempt, const IdentifiersRequest& request);
  void retryIdentifiers(std::int64_t attempt, std::int64_t milliseconds,
                        const IdentifiersRequest& request);
  void stopRequestProcess();
  void applyIdentifiers(const BackendIdentifiers::Identifiers& identifiers, std::int64_t userIdKey);

  Run& run_;
  StateManager& stateManager_;
  BackendProtocol& backend_;
  Executor& executor_;
  // The configQueue only, from the first request on.
  std::int64_t sdkConfigAttempt_ = 1;
  std::unique_ptr<Timer> configRetry_;
  /// The timer of the next attempt, set on the queue of the last one. Guarded: after a short wait
  /// the attempt may begin on its queue before the other queue has stored the timer here.
  Guarded<std::unique_ptr<Timer>> retryTimerTask_;
  /// A cycle is running; its waits belong to it. The incomeQueue only.
  bool backendIDsRequestInProcess_ = false;
};

}  // namespace pelorino
