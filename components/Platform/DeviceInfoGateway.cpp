#include "DeviceInfoGateway.h"

#include <utility>

namespace pelorino {

DeviceInfoGateway::DeviceInfoGateway(std::unique_ptr<DeviceInfoRepository> deviceInfoRepository)
    : deviceInfoRepository_(std::move(deviceInfoRepository)) {}

void DeviceInfoGateway::getDeviceData(PlatformProtocol::DeviceDataHandler completionHandler) {
  if (auto data = savedData_.get()) {
    deviceInfoRepository_->refresh(*data);
    savedData_.set(data);
    completionHandler(*data);
    return;
  }
  deviceInfoRepository_->isRooted(
      [weak = weak_from_this(), handler = std::move(completionHandler)](bool isRooted) {
        if (const auto self = weak.lock()) self->finishFirstRead(isRooted, handler);
      });
}

void DeviceInfoGateway::finishFirstRead(
    bool isRooted, const PlatformProtocol::DeviceDataHandler& completionHandler) {
  DeviceData data = deviceInfoRepository_->read();
  data.isRooted = isRooted;
  savedData_.set(data);
  completionHandler(data);
}

}  // namespace pelorino
