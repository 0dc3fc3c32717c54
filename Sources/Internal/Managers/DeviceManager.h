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

/// Owns the device identifiers of a project, the device data and the mark of the library's version.
///
/// Threads: the incomeQueue only. getDeviceData() can hold it up for up to 20 seconds.
class DeviceManager final {
 public:
  DeviceManager(IdentifiersRepository& identifiersRepository, ToolsRepository& toolsRepository,
                PlatformProtocol& platform, Executor& executor);

  /// The project's row, made when there is none. When the platform names another device than the
  /// row, the row's becomes the previous one and the backend's identifiers are absent again.
  std::shared_ptr<DeviceIdentifiers> initializeDeviceId(const Project& project);

  void updateDeviceIdentifiers(const DeviceIdentifiers& identifiers);

  /// Waits for the platform's answer; absent when it does not come in time. While one is overdue
  /// the platform is not asked again, and nobody waits.
  [[nodiscard]] std::optional<DeviceData> getDeviceData();
  [[nodiscard]] ApplicationData getAppData();
  [[nodiscard]] IdentifierData getIdentifiersData();

  /// Whether the library that ran last was another version. Absent on the first run; the mark is
  /// brought up to date.
  std::optional<bool> sdkVersionIsChanged();

  static constexpr std::chrono::seconds deviceDataTimeout{20};

 private:
  std::shared_ptr<DeviceIdentifiers> identifiersOf(const Project& project) const;

  /// An answer and the wait for it. The answer may come after nobody waits any more.
  struct PendingDeviceData {
    std::unique_ptr<Semaphore> arrived;
    Guarded<std::optional<DeviceData>> data{};
  };

  IdentifiersRepository& identifiersRepository_;
  ToolsRepository& toolsRepository_;
  PlatformProtocol& platform_;
  Executor& executor_;
  std::shared_ptr<PendingDeviceData> overdue_;
};

}  // namespace pelorino
