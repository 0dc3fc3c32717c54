#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "DeviceInfoCollector.h"
#include "PlatformData.h"
#include "RootedCheck.h"

namespace pelorino {

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

}  // namespace pelorino
