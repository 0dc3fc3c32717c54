#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Config.h"
#include "Repositories.h"
#include "StateManager.h"

namespace pelorino {

/// The configuration to use when `received` follows `stored`. The backend leaves out exclusions and
/// store products whose version has not changed; they are taken from `stored`.
[[nodiscard]] Config mergedConfig(const Config& stored, Config received);

/// Reads and changes the stored state of the active project.
///
/// Threads: the incomeQueue only.
class ProjectService final {
 public:
  ProjectService(StateManager& stateManager, ProjectRepository& projectRepository,
                 RealPaymentRepository& realPaymentRepository);

  /// Switches tracking for all projects in the database, not only for the active one.
  void setTrackingAvailable(bool available);
  [[nodiscard]] bool getTrackingAvailable() const;

  [[nodiscard]] bool userCounting() const;

  /// The largest number of parameters of a custom event.
  [[nodiscard]] std::int64_t paramsCount() const;

  /// Stores a configuration from the backend and applies its exclusions.
  void applyConfig(const Config& received);

  /// Orders that the active project has reported, of any user. The marks are stored.
  [[nodiscard]] bool isCurrencyPaymentMarked(const std::string& orderId) const;
  void markCurrencyPayment(const std::string& orderId);

  /// Whether the active project has reported its referrer. The setter does nothing while tracking
  /// is off.
  [[nodiscard]] bool isRefererSent() const;
  void setIsRefererSent(bool isSent);

 private:
  StateManager& stateManager_;
  ProjectRepository& projectRepository_;
  RealPaymentRepository& realPaymentRepository_;
};

}  // namespace pelorino
