#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "AccrualLogic.h"
#include "ActivityLogic.h"
#include "EventLogic.h"
#include "IdentityLogic.h"
#include "LifeCycle.h"
#include "LogicBroadcasterProtocol.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "PaymentLogic.h"
#include "ProgressLogic.h"
#include "Run.h"
#include "ServiceFactory.h"
#include "SubscriptionLogic.h"
#include "UserData.h"
#include "UserEvents.h"

namespace pelorino {

/// The analytics module: it wires the services to each other, starts and stops them, and switches
/// tracking. What the host calls is carried out by its parts, one for each subject.
///
/// It never waits for the backend: it runs on the stored configuration, or on the default one.
///
/// Threads: the incomeQueue, except what says otherwise.
class AnalyticsLogic final : public LifeCycleProtocol, public LogicBroadcasterProtocol {
 public:
  AnalyticsLogic(Run& run, StateManager& stateManager, ServiceFactory& services,
                 const Clock& clock);

  /// Wires the services to each other. Once, before anything else.
  void prepareCallBacks();

  /// Takes over what the host decided at the start. Once, before tryStartSDK().
  void applyAnalyticsConfiguration(
      const std::optional<PLRAnalyticsConfigurationLocal>& configuration);

  /// Starts, or tells the backend that tracking is off and stays down.
  void tryStartSDK();
  void startSDK();
  void stopSDK();

  /// Carries out a call that has passed its rule: in the one part that takes it.
  template <class Call>
  void perform(Call call);
  void perform(SetTrackingAvailabilityCall call);
  void perform(SendBufferedEventsCall call);

  template <class Query>
  [[nodiscard]] typename Query::Answer answer(Query query);
  [[nodiscard]] std::string answer(SDKVersionQuery query);
  [[nodiscard]] bool answer(TrackingAvailabilityQuery query);

  /// Limit of parameters of a custom event.
  [[nodiscard]] std::int64_t customEventParamsCount() const {
    return services_.projectService.paramsCount();
  }
  /// Told that limit when a configuration has come.
  std::function<void(std::int64_t)> onCustomEventParamsCountUpdate;
  void forceUpdate() override;

  /// On the thread that posts the notification. The last three return when the incomeQueue has
  /// drained.
  void goActive() override;
  void goInactive() override { stopSession(); }
  void goBackground() override { stopSession(); }
  void goTerminate() override { stopSession(); }

 private:
  void prepareTimerCallBacks();
  void preparePeopleCardCallback();
  void receiveConfig(const Config& config);
  void applyTracking(PLRTrackingStatus trackingAvailability);
  void enableTracking();
  void disableTracking();
  void addTrackingStatus(bool trackingAllowed);
  void stopSession();

  /// The parts that take calls and answer queries.
  [[nodiscard]] auto parts() {
    return std::tie(accruals_, events_, identity_, payments_, progress_, subscriptions_);
  }

  Run& run_;
  StateManager& stateManager_;
  ServiceFactory& services_;
  UserEvents userEvents_;
  UserData userData_;
  AccrualLogic accruals_;
  ActivityLogic activity_;
  EventLogic events_;
  IdentityLogic identity_;
  PaymentLogic payments_;
  ProgressLogic progress_;
  SubscriptionLogic subscriptions_;
  bool started_ = false;  ///< True from the first complete startSDK(); never set back.
};

template <class Call>
void AnalyticsLogic::perform(Call call) {
  const auto offer = [&call](auto& part) {
    if constexpr (requires { part.perform(std::move(call)); }) part.perform(std::move(call));
  };
  std::apply([&](auto&... part) { (offer(part), ...); }, parts());
}

template <class Query>
typename Query::Answer AnalyticsLogic::answer(Query query) {
  typename Query::Answer answer{};
  const auto offer = [&](auto& part) {
    if constexpr (requires { part.answer(query); }) answer = part.answer(query);
  };
  std::apply([&](auto&... part) { (offer(part), ...); }, parts());
  return answer;
}

}  // namespace pelorino
