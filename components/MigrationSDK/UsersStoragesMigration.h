#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "KeyedArchive.h"
#include "PeopleValueType.h"

// What the store of the earlier native library holds, as far as it is taken over. A field that is
// missing or of another type has the value that stands here.

namespace pelorino {

/// The user card of the old store.
struct PlayerPreferencesMigration {
  std::map<std::string, ArchivedObject> preferences;

  explicit PlayerPreferencesMigration(const ArchivedObject& archived);
};

/// One user of the old store.
struct DataStorageMigration {
  std::int64_t level = 0;
  std::optional<std::string> userUid;
  std::optional<std::string> prevUid;
  std::optional<PlayerPreferencesMigration> playerPreferences;
  std::vector<std::string> transactionIds;
  std::vector<std::int64_t> tutorCompletedSteps;

  explicit DataStorageMigration(const ArchivedObject& archived);

  /// Whether this is the class of the object.
  [[nodiscard]] static bool isClassOf(const ArchivedObject& archived);
};

/// The archived object itself. It borrows the archive.
struct UsersStoragesMigration {
  std::string activeUserId;
  std::map<std::string, ArchivedObject> dataStorages;  ///< All are of DataStorageMigration.
  bool trackingAvailable = false;

  /// Throws LegacyDataError for an object of another class.
  explicit UsersStoragesMigration(const ArchivedObject& archived);
};

}  // namespace pelorino
