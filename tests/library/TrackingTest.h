#pragma once

#include <filesystem>

#include "LibraryTest.h"

namespace pelorino {

/// A started library, whose stored events are seen in their order, also those that have left.
class TrackingTest : public LibraryTest {
 protected:
  TrackingTest() {
    start("ann");
    rows(
        "CREATE TABLE seen (event, userId); CREATE TRIGGER see AFTER INSERT ON events "
        "BEGIN INSERT INTO seen VALUES (new.eventJson, new.userId); END");
  }

  /// Events of the given codes (`'lu','ca'`) since the last look, but for what `without` names.
  std::string stored(const std::string& codes,
                     const std::string& without = "'$.timestamp','$.sessionId'") {
    return seen(codes, "json_remove(event, " + without + ")");
  }
  /// The same, only these fields of them; absent ones as nothing.
  std::string fields(const std::string& codes, const std::vector<std::string>& names) {
    std::string columns;
    for (const auto& name : names)
      columns += (columns.empty() ? "event->>'$." : ", event->>'$.") + name + "'";
    return seen(codes, columns);
  }

  /// The process is gone: what the teardown would still do does not reach the file.
  void kill() {
    system.runUntilIdle();
    const std::string kept = file.path() + ".kept";
    std::filesystem::copy_file(file.path(), kept);
    stop();
    std::filesystem::rename(kept, file.path());
  }

 private:
  std::string seen(const std::string& codes, const std::string& columns) {
    return rows("SELECT " + columns + " FROM seen WHERE event->>'$.code' IN (" + codes +
                ") ORDER BY rowid; DELETE FROM seen");
  }
};

}  // namespace pelorino
