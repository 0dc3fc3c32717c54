#include "DeviceInfoCollector.h"

#include <algorithm>
#include <utility>

#include "PlatformConstants.h"

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

}  // namespace pelorino
