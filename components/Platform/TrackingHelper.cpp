#include "TrackingHelper.h"

#include <fmt/format.h>

#include "Logger.h"

namespace pelorino {
namespace {

constexpr int notDetermined = 0;
constexpr int authorized = 3;

}  // namespace

bool TrackingHelper::trackingStatus(std::optional<int> status) {
  if (!status) {
    Logger::writeLog(PLRLogLevel::warning,
                     "AppTrackingTransparency.framework not included,please add "
                     "'AppTrackingTransparency' dependency");
    return false;
  }
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("ATTrackingManager trackingAuthorizationStatus equals [{}]", *status);
  });
  return *status == authorized || *status == notDetermined;
}

}  // namespace pelorino
