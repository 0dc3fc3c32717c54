#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "RowId.h"

namespace pelorino {

/// The device's ids and those that the backend has given it, one row for each project. Shared by
/// reference.
class DeviceIdentifiers final {
 public:
  RowId idKey = notStoredRowId;
  RowId projectId = notStoredRowId;
  std::string deviceIdentifier;
  std::optional<std::string> previousDeviceIdentifier;
  std::optional<std::int64_t> pelorinoId;
  std::optional<std::int64_t> crossPlatformPelorinoId;
  std::string uuid;
  std::optional<std::int64_t> pelorinoIdTimestamp;
};

}  // namespace pelorino
