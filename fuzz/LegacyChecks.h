#pragma once

#include "JsonHelpers.h"
#include "MemoryPeak.h"
#include "SDKMigrationManager.h"
#include "Text.h"

// What holds for all that is taken over of an earlier generation, whatever its files hold.

namespace pelorino::fuzz {

/// Everything can be stored and sent: the texts are UTF-8, and the stored card holds the same
/// values.
inline void checkMigration(const MigrationObject& object) {
  FUZZ_REQUIRE(repairUtf8(object.description()) == object.description());
  for (const std::string& id : object.transactionIds) FUZZ_REQUIRE(repairUtf8(id) == id);
  const PeopleProperties stored = peopleProperties(peopleJson(object.userCard));
  FUZZ_REQUIRE(stored.size() == object.userCard.size());
  for (const auto& [key, value] : object.userCard) {
    const auto found = stored.find(key);
    FUZZ_REQUIRE(found != stored.end() && encodeJson(found->second) == encodeJson(value));
  }
}

inline void checkCost() {
  FUZZ_REQUIRE(MemoryPeak::bytes() < std::int64_t{64} * 1024 * 1024);
}

}  // namespace pelorino::fuzz
