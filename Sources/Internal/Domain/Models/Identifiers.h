#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "RowId.h"

namespace pelorino {

/// The ids that travel beside a request, in its HTTP headers and never in its JSON.
struct Identifiers {
  std::string deviceId;
  std::optional<std::string> previousDeviceId;
  std::optional<std::string> userId;  ///< The host's name for the user, not a row id.
  std::optional<std::string> previousUserId;
  std::optional<std::int64_t> pelorinoId;
  std::optional<std::int64_t> crossPlatformPelorinoId;
  std::optional<std::int64_t> pelorinoIdTimestamp;
};

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
