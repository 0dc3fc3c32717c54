#pragma once

#include <cstdint>
#include <string>

#include "Files.h"
#include "HostFacts.h"
#include "Lazy.h"
#include "PlatformData.h"

namespace pelorino {

/// Reads what the application is from its bundle. The library's queues only.
class ApplicationCollector final {
 public:
  /// `bundle` and `files` outlive this object.
  ApplicationCollector(HostFacts& bundle, Files& files, bool isSimulator);

  // Empty when the bundle does not say.
  [[nodiscard]] std::string applicationVersion() const;
  [[nodiscard]] std::string applicationBuildVersion() const;
  [[nodiscard]] std::string applicationBundle() const;

  /// How the application was signed; see ApplicationData.
  [[nodiscard]] std::int64_t sandboxState() const;

 private:
  HostFacts& bundle_;
  Files& files_;
  bool isSimulator_;
};

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
