#include "DeviceInfoRepository.h"

#include <cmath>
#include <utility>

#include "PixelDensity.h"
#include "PlatformConstants.h"

namespace pelorino {

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

}  // namespace pelorino
