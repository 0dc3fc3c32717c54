#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "Executor.h"
#include "Guarded.h"
#include "Identifiers.h"
#include "PlatformProtocol.h"
#include "Project.h"
#include "Repositories.h"

namespace pelorino {

/// Reads and stores the device identifiers of a project, the device data and the version of the
/// library that ran last.
///
/// Threads: the incomeQueue only. getDeviceData() can block it for up to 20 seconds.
class DeviceManager final {
 public:
  DeviceManager(IdentifiersRepository& identifiersRepository, ToolsRepository& toolsRepository,
                PlatformProtocol& platform, Executor& executor);

  /// Returns the project's row, and inserts it if there is none. Updates a row that names another
  /// device than the platform does: the old identifier becomes the previous one, and the backend's
  /// identifiers become absent.
  std::shared_ptr<DeviceIdentifiers> initializeDeviceId(const Project& project);

  void updateDeviceIdentifiers(const DeviceIdentifiers& identifiers);

  /// Waits for the platform's answer; absent when it does not come in time. While that answer is
  /// missing, later calls return at once without one and do not ask again.
  [[nodiscard]] std::optional<DeviceData> getDeviceData();
  [[nodiscard]] ApplicationData getAppData();
  [[nodiscard]] IdentifierData getIdentifiersData();

  /// Whether the library that ran last had another version; absent on the first run. Stores the
  /// present version.
  std::optional<bool> sdkVersionIsChanged();

  static constexpr std::chrono::seconds deviceDataTimeout{20};

 private:
  std::shared_ptr<DeviceIdentifiers> identifiersOf(const Project& project) const;

  /// An answer and the wait for it. Shared with the platform's handler: the answer may come after
  /// the wait has ended.
  struct PendingDeviceData {
    std::unique_ptr<Semaphore> arrived;
    Guarded<std::optional<DeviceData>> data{};
  };

  IdentifiersRepository& identifiersRepository_;
  ToolsRepository& toolsRepository_;
  PlatformProtocol& platform_;
  Executor& executor_;
  std::shared_ptr<PendingDeviceData> overdue_;  ///< Null when no answer is overdue.
};

}  // namespace pelorino
