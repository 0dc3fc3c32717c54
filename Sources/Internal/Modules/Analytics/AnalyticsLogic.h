#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ActivityService.h"
#include "AnalyticsProtocol.h"
#include "Clock.h"
#include "ConfigService.h"
#include "CurrencyAccrualService.h"
#include "EventsService.h"
#include "LevelResourceService.h"
#include "LifeCycleProtocol.h"
#include "LifeCycleRepository.h"
#include "LogicBroadcasterProtocol.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "ProjectService.h"
#include "ReportService.h"
#include "StateManager.h"
#include "TimerService.h"
#include "UserService.h"

namespace pelorino {

/// The services that the analytics module works with.
struct AnalyticsServices {
  std::shared_ptr<StateManager> stateManager;
  std::shared_ptr<ProjectService> projectService;
  std::shared_ptr<UserService> userService;
  std::shared_ptr<EventsService> eventsService;
  std::shared_ptr<TimerService> timerService;
  std::shared_ptr<ConfigService> configService;
  std::shared_ptr<ReportService> reportService;
  std::shared_ptr<ActivityService> activityService;
  std::shared_ptr<CurrencyAccrualService> currencyAccrualService;
  std::shared_ptr<LevelResourceService> levelResourceService;
};

/// The analytics module: it holds the services, wires them to each other, and carries out every
/// operation behind AnalyticsProxy.
///
/// It never waits for the backend: it runs on the stored configuration, or on the default one.
///
/// Threads: the incomeQueue, except what says otherwise.
class AnalyticsLogic final : public AnalyticsProtocol,
                             public LifeCycleProtocol,
                             public LogicBroadcasterProtocol,
                             public std::enable_shared_from_this<AnalyticsLogic> {
 public:
  /// The new logic listens to the life cycle from here on.
  [[nodiscard]] static std::shared_ptr<AnalyticsLogic> make(
      AnalyticsServices services, std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle,
      const Clock& clock);

  /// Wires the services to each other. Once, before anything else.
  void prepareCallBacks();

  /// Takes over what the host decided at the start. Once, before tryStartSDK().
  void applyAnalyticsConfiguration(
      const std::optional<PLRAnalyticsConfigurationLocal>& configuration);

  /// Starts, or tells the backend that tracking is off and stays down.
  void tryStartSDK();
  void startSDK();
  void startActivity();
  void stopActivity();

  void stopSDK() override;
  void getDeviceId(TextHandler completionHandler) override;
  void getSDKVersion(TextHandler completionHandler) override;
  void getTrackingAvailability(BoolHandler completionHandler) override;
  void setTrackingAvailability(bool value) override;
  void getUserId(TextHandler completionHandler) override;
  void setUserId(std::string userId) override;
  void getCurrentLevel(IntegerHandler completionHandler) override;
  void setCurrentLevel(std::int64_t currentLevel) override;
  void customEvent(std::string eventName, AnyCodable::Object parameters) override;
  void sendBufferedEvents() override;
  [[nodiscard]] std::int64_t getCustomEventParamsCount() override;

  /// On the thread that posts the notification. The last three return when the incomeQueue has
  /// drained.
  void goActive() override;
  void goInactive() override;
  void goBackground() override;
  void goTerminate() override;

  void setOnBackendIdentifiersUpdate(IdentifiersUpdate onBackendIdentifiersUpdate) override;
  void forceUpdate() override;

 private:
  AnalyticsLogic(AnalyticsServices services, std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle,
                 const Clock& clock);

  /// A callback that runs `work(logic)` as a block on the incomeQueue.
  template <class Work>
  std::function<void()> onIncomeQueue(Work work);
  void prepareTimerCallBacks();
  void receiveConfig(const Config& config);
  void applyTracking(PLRTrackingStatus trackingAvailability);

  void stopSession();
  void sendAlive();
  void sendDeviceInfo();
  void sendUserEngagement();
  void addTrackingStatus(bool trackingAllowed);

  void enableTracking();
  void disableTracking();
  void switchUser(const std::string& userId);
  void requestMissingBackendIds();
  void removeUsers(const std::vector<std::shared_ptr<User>>& users);
  void removeEventsAndResources();

  const AnalyticsServices services_;
  const std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle_;
  const Clock& clock_;
  bool started_ = false;  ///< True from the first complete startSDK(); never set back.
  /// Any thread; written on the incomeQueue.
  std::atomic<std::int64_t> customEventParamsCount_;
};

}  // namespace pelorino
