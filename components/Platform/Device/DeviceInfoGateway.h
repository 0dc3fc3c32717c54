#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Guarded.h"
#include "HostFacts.h"
#include "PlatformData.h"
#include "PlatformProtocol.h"
#include "RootedCheck.h"

namespace pelorino {

/// Reads device, screen, locale and clock, each value afresh. The library's queues only.
class DeviceInfoCollector final {
 public:
  /// `facts` outlives this object.
  explicit DeviceInfoCollector(HostFacts& facts) : facts_(facts) {}

  [[nodiscard]] std::string manufacturer() const;
  [[nodiscard]] std::string osName() const;
  [[nodiscard]] std::string osVersion() const;
  [[nodiscard]] std::optional<std::string> country() const;

  /// The first preferred language without what follows its first hyphen.
  [[nodiscard]] std::optional<std::string> language() const;
  [[nodiscard]] std::string model() const;
  [[nodiscard]] std::int64_t timeZoneOffset() const;

  /// Absent without a screen, or if its size makes no sense.
  [[nodiscard]] std::optional<std::string> displayResolution() const;

  /// Pixels.
  [[nodiscard]] std::optional<HostSize> nativeBounds() const;

 private:
  HostFacts& facts_;
};

/// Adds what follows from the collected values: density, diagonal, the fallback of the country.
/// The library's queues only.
class DeviceInfoRepository final {
 public:
  DeviceInfoRepository(DeviceInfoCollector collector,
                       std::unique_ptr<RootedCheckProtocol> rootedCheck);

  /// Everything but `isRooted`.
  [[nodiscard]] DeviceData read() const;

  /// Reads afresh what may change while the process runs: country, language and time zone.
  void refresh(DeviceData& data) const;

  void isRooted(RootedCheckProtocol::CompletionHandler completionHandler);

 private:
  [[nodiscard]] std::optional<double> displayDiagonal(std::optional<std::int64_t> ppi) const;

  DeviceInfoCollector collector_;
  std::unique_ptr<RootedCheckProtocol> rootedCheck_;
};

/// What the device is: read once with the integrity probe, then kept, apart from the values that
/// may change while the process runs. Any thread of the library.
class DeviceInfoGateway final : public std::enable_shared_from_this<DeviceInfoGateway> {
 public:
  explicit DeviceInfoGateway(std::unique_ptr<DeviceInfoRepository> deviceInfoRepository);

  /// See PlatformProtocol.
  void getDeviceData(PlatformProtocol::DeviceDataHandler completionHandler);

 private:
  void finishFirstRead(bool isRooted, const PlatformProtocol::DeviceDataHandler& completionHandler);

  std::unique_ptr<DeviceInfoRepository> deviceInfoRepository_;
  Guarded<std::optional<DeviceData>> savedData_;  // The main queue writes what others read.
};

}  // namespace pelorino
