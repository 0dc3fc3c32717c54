#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ActivityService.h"
#include "Clock.h"
#include "ConfigService.h"
#include "CurrencyAccrualService.h"
#include "Event.h"
#include "EventCalls.h"
#include "EventsService.h"
#include "IdentityCalls.h"
#include "LevelResourceService.h"
#include "LifeCycleProtocol.h"
#include "LifeCycleRepository.h"
#include "LogicBroadcasterProtocol.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "PaymentCalls.h"
#include "PeopleService.h"
#include "ProgressCalls.h"
#include "ProjectService.h"
#include "QueueManager.h"
#include "ReportService.h"
#include "StateManager.h"
#include "SubscriptionPayment.h"
#include "SubscriptionService.h"
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
  std::shared_ptr<PeopleService> peopleService;
  std::shared_ptr<SubscriptionService> subscriptionService;
};

/// The analytics module: it holds the services, wires them to each other, and carries out every
/// operation behind AnalyticsProxy.
///
/// It never waits for the backend: it runs on the stored configuration, or on the default one.
///
/// Threads: the incomeQueue, except what says otherwise.
class AnalyticsLogic final : public LifeCycleProtocol,
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

  void stopSDK();

  void perform(SetTrackingAvailabilityCall call);
  void perform(const SetUserIdCall& call);
  void perform(const ReplaceUserIdCall& call);
  void perform(SetCurrentLevelCall call);
  void perform(LevelUpCall call);
  void perform(CurrentBalanceCall call);
  void perform(CustomEventCall call);
  void perform(SendBufferedEventsCall call);
  void perform(VirtualCurrencyPaymentCall call);
  void perform(CurrencyAccrualCall call);
  void perform(StartProgressionEventCall call);
  void perform(FinishProgressionEventCall call);
  void perform(RealCurrencyPaymentCall call);
  void perform(SocialNetworkConnectCall call);
  void perform(SocialNetworkPostCall call);
  void perform(TutorialCall call);
  void perform(ReferrerCall call);
  void perform(const SubscriptionPaymentCall& call);
  void perform(EngineSubscriptionPaymentCall call);
  void perform(const SubscriptionHistoryCall& call);
  void perform(const EngineSubscriptionHistoryCall& call);
  void perform(AdImpressionCall call);

  [[nodiscard]] std::string answer(DeviceIdQuery) const;
  [[nodiscard]] std::string answer(SDKVersionQuery) const;
  [[nodiscard]] bool answer(TrackingAvailabilityQuery) const;
  [[nodiscard]] std::string answer(UserIdQuery) const;
  [[nodiscard]] std::int64_t answer(CurrentLevelQuery) const;
  [[nodiscard]] bool answer(RestoreTransactionHistoryQuery) const;

  /// Limit of parameters of a custom event. Any thread.
  [[nodiscard]] std::int64_t getCustomEventParamsCount() const;

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
  void preparePeopleCardCallback();
  void receiveConfig(const Config& config);
  void applyTracking(PLRTrackingStatus trackingAvailability);

  /// What reports something of a session stops here without one.
  [[nodiscard]] bool hasSession() const;
  /// The record with what events have in common, as far as it has these fields: the time, and the
  /// session, level and progression of the active user.
  template <class Record>
  [[nodiscard]] Record stamped(Record record) const;
  /// Stores the stamped record as an event of the active user.
  template <class Record>
  void addEvent(Record record);

  /// Stores an event of the user's sums since the last one, if there are any, and forgets them.
  void addCurrencyAccrual();
  /// The same for the sums that an earlier run has left behind, for every user of the project.
  void addSavedCurrencyAccrualResources();
  /// Stores an event of what has changed in the active user's card, or of the whole card.
  void generatePeopleEvent(bool needFullCard);

  /// Whether the backend's subscriptions are others than those whose history was asked for.
  [[nodiscard]] bool checkIfNeedResetHistory(const Config& received) const;
  /// Asks the store for the products that the configuration names, if it does.
  void startSubscriptionsService();
  void receiveProducts(const std::vector<SubscriptionProduct>& products);
  void sendSubscriptionsHistoryEvent();
  template <class Transactions>
  void receiveHistory(const Transactions& transactions);
  /// Reports the payment and remembers its order.
  void addSubscriptionPayment(SubscriptionPayment payment);

  void sendBufferedEvents();
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

template <class Work>
std::function<void()> AnalyticsLogic::onIncomeQueue(Work work) {
  return [weak = weak_from_this(), work] {
    QueueManager::incomeQueue().addOperation([weak, work] {
      if (const auto self = weak.lock()) work(*self);
    });
  };
}

template <class Record>
Record AnalyticsLogic::stamped(Record record) const {
  const User& user = *services_.stateManager->getActiveUser();
  record.timestamp = clock_.milliseconds();
  if constexpr (requires { record.sessionId; }) record.sessionId = user.sessionId.value_or(0);
  if constexpr (requires { record.level; }) record.level = user.level;
  if constexpr (requires { record.inProgress; }) {
    if (const auto& location = services_.userService->getLocation()) {
      record.inProgress = {location->name};
    }
  }
  return record;
}

template <class Record>
void AnalyticsLogic::addEvent(Record record) {
  services_.eventsService->addEvent(Event(stamped(std::move(record))));
}

}  // namespace pelorino
