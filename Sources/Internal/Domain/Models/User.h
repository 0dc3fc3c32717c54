#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "RowId.h"

namespace pelorino {

/// Stored state of one user of a project.
///
/// Threads: the incomeQueue only. Shared: store a change through the repository.
class User final {
 public:
  explicit User(RowId project = notStoredRowId, std::optional<std::string> id = std::nullopt,
                bool isDefault = false)
      : projectId(project), userId(std::move(id)), isDefaultUser(isDefault) {}

  RowId idKey = notStoredRowId;
  RowId projectId;
  std::int64_t level = 1;
  std::optional<std::int64_t> sessionId;  ///< Begin of the session, milliseconds since 1970.
  std::optional<std::string> userId;      ///< The host's name for the user, not a row id.
  std::optional<std::string> previousUserId;
  std::optional<std::int64_t> lastForegroundTime;  ///< Milliseconds since 1970.
  std::optional<std::int64_t> lastBackgroundTime;  ///< Milliseconds since 1970.
  bool isDefaultUser;
  bool isResourceAggregationEnable = true;  ///< Whether sums of the level are collected.
  bool balanceIsSent = false;               ///< In memory only.
};

/// A progression that has been started and not finished. In memory only.
struct Location {
  std::string name;
  std::optional<std::string> source;
  std::optional<std::int64_t> difficulty;
  std::int64_t startTimestamp = 0;  ///< Milliseconds since 1970.
};

}  // namespace pelorino
