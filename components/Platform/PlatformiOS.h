#pragma once

#include <memory>

#include "ApplicationGateway.h"
#include "DeviceInfoGateway.h"
#include "IdentifierGateway.h"
#include "PlatformProtocol.h"
#include "PlatformStorage.h"
#include "SdkConstraints.h"

namespace pelorino {

/// The platform, from the host's description and the operating system. A new object reads
/// everything again.
///
/// Threads: the library's queues; a first read of the device data ends on the main queue.
class PlatformiOS final : public PlatformProtocol {
 public:
  explicit PlatformiOS(std::shared_ptr<PlatformStorageProtocol> platformStorage);

  [[nodiscard]] ApplicationData getApplicationData() override;
  void getDeviceData(DeviceDataHandler completionHandler) override;
  [[nodiscard]] IdentifierData getIdentifierData() override;
  [[nodiscard]] SdkData getSdkData() override;

  /// Deletes the device identifiers of this application. On the caller's thread; writes a file.
  static void clearKeychain();

 private:
  std::unique_ptr<KeyStore> keychain_;
  ApplicationGateway applicationGateway_;
  std::shared_ptr<DeviceInfoGateway> deviceGateway_;
  IdentifierGateway identifierGateway_;
  SDKGateway sdkGateway_;
  std::shared_ptr<PlatformStorageProtocol> platformStorage_;
};

}  // namespace pelorino
