#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "Config.h"
#include "RowId.h"

namespace pelorino {

/// Stored state of one application key.
///
/// Threads: the incomeQueue only. Shared: store a change through the repository.
class Project final {
 public:
  explicit Project(std::string with = {}) : applicationKey(std::move(with)) {}

  RowId idKey = notStoredRowId;
  std::string applicationKey;
  std::optional<RowId> activeUserId;  ///< `idKey` of the active user.
  bool trackingAvailable = true;
  std::optional<std::string> applicationBundle;
  std::optional<std::string> applicationVersion;
  std::optional<std::string> applicationBuildVersion;
  Config configuration = Config::defaulConfiguration();
  bool isReferralSent = false;
  std::optional<std::int64_t> savedTime;
  std::optional<std::int64_t> categoriesVersion;
  bool isMigrated = false;
};

}  // namespace pelorino
