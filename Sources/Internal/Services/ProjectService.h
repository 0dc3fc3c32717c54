#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Config.h"
#include "Repositories.h"
#include "StateManager.h"

namespace pelorino {

/// The record that is in force when `received` has come in after `stored`. The backend leaves out
/// exclusions and store products whose version the client has already told it.
[[nodiscard]] Config mergedConfig(const Config& stored, Config received);

/// Reads and changes the stored state of the application keys.
///
/// Threads: the incomeQueue only.
class ProjectService final {
 public:
  ProjectService(StateManager& stateManager, ProjectRepository& projectRepository,
                 RealPaymentRepository& realPaymentRepository);

  /// Switches tracking for every project on the device, not only the active one.
  void setTrackingAvailable(bool available);
  [[nodiscard]] bool getTrackingAvailable() const;

  [[nodiscard]] bool userCounting() const;

  /// Limit of parameters of a custom event.
  [[nodiscard]] std::int64_t paramsCount() const;

  /// Puts a configuration from the backend in force, its exclusions included, and stores it.
  void applyConfig(const Config& received);

  /// Orders that the active project has reported, whichever user paid; stored.
  [[nodiscard]] bool isCurrencyPaymentMarked(const std::string& orderId) const;
  void markCurrencyPayment(const std::string& orderId);

  /// Whether the active project has reported its referrer. While tracking is off it is not changed.
  [[nodiscard]] bool isRefererSent() const;
  void setIsRefererSent(bool isSent);

 private:
  StateManager& stateManager_;
  ProjectRepository& projectRepository_;
  RealPaymentRepository& realPaymentRepository_;
};

}  // namespace pelorino
