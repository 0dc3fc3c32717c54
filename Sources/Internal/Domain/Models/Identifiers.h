#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "RowId.h"

namespace pelorino {

/// The identifiers that a request carries in its HTTP headers, never in its JSON.
struct Identifiers {
  std::string deviceId;
  std::optional<std::string> previousDeviceId;
  std::optional<std::string> userId;  ///< The host's name for the user, not a row id.
  std::optional<std::string> previousUserId;
  std::optional<std::int64_t> pelorinoId;
  std::optional<std::int64_t> crossPlatformPelorinoId;
  std::optional<std::int64_t> pelorinoIdTimestamp;
};

/// The device's identifiers and those that the backend gave it; one row for each project.
///
/// Threads: the incomeQueue only. Shared: store a change through the repository.
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
