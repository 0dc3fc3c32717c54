#pragma once

#include <memory>
#include <optional>

#include "DeviceInfoRepository.h"
#include "Guarded.h"
#include "PlatformProtocol.h"

namespace pelorino {

/// What the device is: read once with the integrity probe, then kept, apart from the values that
/// may change while the process runs. Any thread of the library.
class DeviceInfoGateway final : public std::enable_shared_from_this<DeviceInfoGateway> {
 public:
  explicit DeviceInfoGateway(std::unique_ptr<DeviceInfoRepository> deviceInfoRepository);

  /// See PlatformProtocol.
  void getDeviceData(PlatformProtocol::DeviceDataHandler completionHandler);

 private:
  void finishFirstRead(bool isRooted, const PlatformProtocol::DeviceDataHandler& completionHandler);

  std::unique_ptr<DeviceInfoRepository> deviceInfoRepository_;
  Guarded<std::optional<DeviceData>> savedData_;  // The main queue writes what others read.
};

}  // namespace pelorino
