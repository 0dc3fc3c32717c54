#include "DeviceInfoGateway.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "PixelDensity.h"

namespace pelorino {
namespace {

/// Far beyond any screen, and well inside an integer.
constexpr double maximalPixels = 1e9;

/// Whole pixels; absent where no screen could have so many.
std::optional<std::int64_t> pixels(double points, double scale) {
  const double exact = points * scale;
  if (!(exact >= 0 && exact <= maximalPixels)) return std::nullopt;
  return static_cast<std::int64_t>(exact);
}

}  // namespace

std::string DeviceInfoCollector::manufacturer() const {
  return std::string(PlatformConstants::manufacturer);
}

std::string DeviceInfoCollector::osName() const {
  return std::string(PlatformConstants::osName);
}

std::string DeviceInfoCollector::osVersion() const {
  return facts_.systemVersion();
}

std::optional<std::string> DeviceInfoCollector::country() const {
  return facts_.region();
}

std::optional<std::string> DeviceInfoCollector::language() const {
  const auto tags = facts_.preferredLanguages();
  if (tags.empty()) return std::nullopt;
  return tags.front().substr(0, tags.front().find('-'));
}

std::string DeviceInfoCollector::model() const {
  std::string model = facts_.machine();
  model.erase(std::remove(model.begin(), model.end(), '\0'), model.end());
  return model;
}

std::int64_t DeviceInfoCollector::timeZoneOffset() const {
  return facts_.secondsFromGmt();
}

std::optional<std::string> DeviceInfoCollector::displayResolution() const {
  const auto screen = facts_.screen();
  if (!screen) return std::nullopt;
  const auto width = pixels(screen->bounds.width, screen->scale);
  const auto height = pixels(screen->bounds.height, screen->scale);
  if (!width || !height) return std::nullopt;
  const auto [smaller, larger] = std::minmax(*width, *height);
  return std::to_string(larger) + "x" + std::to_string(smaller);
}

std::optional<HostSize> DeviceInfoCollector::nativeBounds() const {
  const auto screen = facts_.screen();
  return screen ? std::optional(screen->nativeBounds) : std::nullopt;
}

DeviceInfoRepository::DeviceInfoRepository(DeviceInfoCollector collector,
                                           std::unique_ptr<RootedCheckProtocol> rootedCheck)
    : collector_(collector), rootedCheck_(std::move(rootedCheck)) {}

DeviceData DeviceInfoRepository::read() const {
  DeviceData data;
  refresh(data);
  data.osVersion = collector_.osVersion();
  data.osName = collector_.osName();
  data.manufacturer = collector_.manufacturer();
  data.model = collector_.model();
  data.displayPpi = pixelDensity(data.model);
  data.displayResolution = collector_.displayResolution();
  data.displayDiagonal = displayDiagonal(data.displayPpi);
  return data;
}

void DeviceInfoRepository::refresh(DeviceData& data) const {
  data.country = collector_.country().value_or(std::string(PlatformConstants::unknown));
  data.language = collector_.language();
  data.timeZoneOffset = collector_.timeZoneOffset();
}

void DeviceInfoRepository::isRooted(RootedCheckProtocol::CompletionHandler completionHandler) {
  rootedCheck_->isRooted(std::move(completionHandler));
}

std::optional<double> DeviceInfoRepository::displayDiagonal(std::optional<std::int64_t> ppi) const {
  const auto bounds = collector_.nativeBounds();
  if (!bounds || !ppi || *ppi == 0) return std::nullopt;
  const auto density = static_cast<double>(*ppi);
  const double width = bounds->width / density;
  const double height = bounds->height / density;
  const double inches = std::sqrt(width * width + height * height);
  // The diagonal travels as a JSON number, which has no form for what is not finite.
  return std::isfinite(inches) ? std::optional(inches) : std::nullopt;
}

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
