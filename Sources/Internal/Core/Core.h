#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "AnalyticsObserver.h"
#include "AnalyticsProxy.h"
#include "AntiCheatLogic.h"
#include "Guarded.h"
#include "LibraryRun.h"
#include "MessagingLogicProxy.h"
#include "NotificationCenter.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "PeopleLogic.h"

namespace pelorino {

/// Owns the fronts of the modules, and the run behind them while there is one. One core exists at a
/// time in the process.
///
/// Threads: any. A run begins and ends on the incomeQueue, and so does the core's destruction.
/// Errors:  logged.
class Core final : public std::enable_shared_from_this<Core> {
 public:
  /// The one core. It is made if there is none; its fronts refuse calls until a run begins.
  [[nodiscard]] static std::shared_ptr<Core> shared();

  /// Ends the run and the core after everything already queued. Queues and stored data stay; the
  /// next public call makes a new core.
  static void destroy();

  Core();
  ~Core();
  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;

  /// Accepts the first call and refuses later ones. The start is a block on the incomeQueue. If the
  /// application is in the background, the queue is paused until it becomes active.
  void initialize(std::string applicationKey,
                  std::optional<PLRAnalyticsConfigurationLocal> configuration);

  [[nodiscard]] AnalyticsProxy& analyticsProxy() const { return *analyticsProxy_; }
  [[nodiscard]] PeopleLogic& peopleLogic() const { return *peopleLogic_; }
  [[nodiscard]] AntiCheatLogic& antiCheatLogic() const { return *antiCheatLogic_; }
  [[nodiscard]] MessagingLogicProxy& messagingProxy() const { return *messagingProxy_; }
  [[nodiscard]] AnalyticsObserver& analyticsObserver() const { return *analyticsObserver_; }

  [[nodiscard]] bool isInitialized() const { return isInitialized_; }
  [[nodiscard]] bool isEditorMode() const { return isEditorMode_; }
  void enableEditorMode() { isEditorMode_ = true; }

 private:
  static Guarded<std::shared_ptr<Core>>& privateShared();

  /// On the incomeQueue.
  void stop();
  void startInitialize(std::string applicationKey,
                       std::optional<PLRAnalyticsConfigurationLocal> configuration);
  void waitForActive();
  static void onLoadAction(const std::shared_ptr<Core>& core);

  // The start and its steps, on the incomeQueue.
  void start(const std::string& applicationKey,
             std::optional<PLRAnalyticsConfigurationLocal> configuration);
  [[nodiscard]] std::shared_ptr<LibraryRun> makeRun(std::unique_ptr<CoreFactory> coreFactory,
                                                    const std::string& applicationKey,
                                                    const std::optional<std::string>& userId);
  void connectFronts();

  const std::shared_ptr<AnalyticsProxy> analyticsProxy_;
  const std::shared_ptr<PeopleLogic> peopleLogic_;
  const std::shared_ptr<AntiCheatLogic> antiCheatLogic_;
  const std::shared_ptr<MessagingLogicProxy> messagingProxy_;
  const std::shared_ptr<AnalyticsObserver> analyticsObserver_;
  std::shared_ptr<LibraryRun> run_;  ///< Null when there is no run. The incomeQueue only.
  std::atomic<bool> isInitialized_ = false;
  std::atomic<bool> isEditorMode_ = false;
  /// Set while a start waits for the application to become active.
  Guarded<std::shared_ptr<NotificationCenter::Observation>> becameActive_;
};

}  // namespace pelorino
