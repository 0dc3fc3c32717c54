#pragma once

#include "ApplicationCollector.h"
#include "Lazy.h"
#include "PlatformData.h"

namespace pelorino {

/// Puts together what the collector reads.
class ApplicationInfoRepository final {
 public:
  explicit ApplicationInfoRepository(ApplicationCollector collector) : collector_(collector) {}

  [[nodiscard]] ApplicationData read() const {
    return {collector_.applicationVersion(), collector_.applicationBuildVersion(),
            collector_.applicationBundle(), collector_.sandboxState()};
  }

 private:
  ApplicationCollector collector_;
};

/// What the application is, read once. Any thread of the library.
class ApplicationGateway final {
 public:
  explicit ApplicationGateway(ApplicationInfoRepository appRepository)
      : appRepository_(appRepository) {}

  [[nodiscard]] ApplicationData getApplicationData() {
    return applicationData_.get([&] { return appRepository_.read(); });
  }

 private:
  ApplicationInfoRepository appRepository_;
  Lazy<ApplicationData> applicationData_;
};

}  // namespace pelorino
