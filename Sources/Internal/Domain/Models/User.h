#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "RowId.h"

namespace pelorino {

/// Stored state of one user of a project. Shared by reference: who changes a field stores the user
/// through its repository.
///
/// Threads: the incomeQueue.
class User final {
 public:
  explicit User(RowId project = notStoredRowId, std::optional<std::string> id = std::nullopt,
                bool isDefault = false)
      : projectId(project), userId(std::move(id)), isDefaultUser(isDefault) {}

  RowId idKey = notStoredRowId;
  RowId projectId;
  std::int64_t level = 1;
  std::optional<std::int64_t> sessionId;
  std::optional<std::string> userId;  ///< The host's name for the user, not a row id.
  std::optional<std::string> previousUserId;
  std::optional<std::int64_t> lastForegroundTime;
  std::optional<std::int64_t> lastBackgroundTime;
  bool isDefaultUser;
  bool isResourceAggregationEnable = true;
  bool balanceIsSent = false;  ///< Not stored: one balance for each run of the process.
};

/// A progression that the user has started and not finished.
struct Location {
  std::string name;
  std::optional<std::string> source;
  std::optional<std::int64_t> difficulty;
  std::int64_t startTimestamp = 0;  ///< Milliseconds since 1970.
};

}  // namespace pelorino
