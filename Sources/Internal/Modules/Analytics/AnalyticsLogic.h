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

/// The analytics module. It connects the services, starts and stops them, and switches tracking.
/// Its parts, one for each subject, carry out the host's calls.
///
/// It never waits for the backend: until an answer comes it uses the stored configuration, or the
/// default one.
///
/// Threads: the incomeQueue only, except the four notifications at the end.
class AnalyticsLogic final : public LifeCycleProtocol, public LogicBroadcasterProtocol {
 public:
  AnalyticsLogic(Run& run, StateManager& stateManager, ServiceFactory& services,
                 const Clock& clock);

  /// Sets the callbacks of the services. Call it once, before anything else.
  void prepareCallBacks();

  /// Applies the host's configuration. Call it once, before tryStartSDK().
  void applyAnalyticsConfiguration(
      const std::optional<PLRAnalyticsConfigurationLocal>& configuration);

  /// Starts if tracking is on. Otherwise it only tells the backend that tracking is off.
  void tryStartSDK();
  void startSDK();
  void stopSDK();

  /// Carries out a call that has passed its rule. Exactly one part takes each call.
  template <class Call>
  void perform(Call call);
  void perform(SetTrackingAvailabilityCall call);
  void perform(SendBufferedEventsCall call);

  template <class Query>
  [[nodiscard]] typename Query::Answer answer(Query query);
  [[nodiscard]] std::string answer(SDKVersionQuery query);
  [[nodiscard]] bool answer(TrackingAvailabilityQuery query);

  /// The largest number of parameters of a custom event.
  [[nodiscard]] std::int64_t customEventParamsCount() const {
    return services_.projectService.paramsCount();
  }
  /// Called with that number when a configuration from the backend is applied.
  std::function<void(std::int64_t)> onCustomEventParamsCountUpdate;
  void forceUpdate() override;

  /// Called on the thread that posts the notification. The last three wait until the incomeQueue is
  /// empty.
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
  bool started_ = false;  ///< True from the first complete startSDK() to the end of the run.
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
