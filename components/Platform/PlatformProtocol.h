#pragma once

#include <functional>

#include "PlatformData.h"

namespace pelorino {

/// The one object through which the platform is read. Operations do I/O: the library's queues only.
class PlatformProtocol {
 public:
  using DeviceDataHandler = std::function<void(const DeviceData&)>;

  virtual ~PlatformProtocol() = default;

  /// Read once, then kept.
  [[nodiscard]] virtual ApplicationData getApplicationData() = 0;

  /// The first answer comes on the main queue, later ones at once on the caller's thread. Country,
  /// language and time zone are read each time. The handler is never called if this object is
  /// destroyed before its first answer.
  virtual void getDeviceData(DeviceDataHandler completionHandler) = 0;

  /// Read once, then kept.
  [[nodiscard]] virtual IdentifierData getIdentifierData() = 0;

  [[nodiscard]] virtual SdkData getSdkData() = 0;
};

}  // namespace pelorino
