#include <pelorino/PLRAnalyticsConfiguration.h>

#include "HostText.h"
#include "PLRAnalyticsConfigurationLocal.h"

std::string PLRAnalyticsConfiguration::description() const {
  std::string text = std::string("logLevel: ") + ::description(logLevel) + "\n";
  if (userId) text += "userId: " + *userId + "\n";
  if (currentLevel) text += "currentLevel: " + std::to_string(*currentLevel) + "\n";
  return text + "trackingAvailability: " + ::description(trackingAvailability);
}

PLRAnalyticsConfigurationLocal PLRAnalyticsConfiguration::cloneToLocal() const {
  return {.logLevel = logLevel,
          .userId = pelorino::repaired(userId),
          .level = currentLevel,
          .trackingAvailability = trackingAvailability};
}
