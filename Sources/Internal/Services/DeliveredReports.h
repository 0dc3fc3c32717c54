#pragma once

#include <string>

namespace pelorino {

/// The uuids of reports that the backend has accepted, but whose row may still be stored: they must
/// not be sent again. The disk may have refused to delete the row, or the next run may have read it
/// before it was deleted.
///
/// Threads: any. It belongs to the process and outlives a run.
class DeliveredReports final {
 public:
  DeliveredReports() = delete;

  static void add(const std::string& uuid);
  static void remove(const std::string& uuid);
  [[nodiscard]] static bool contains(const std::string& uuid);
};

}  // namespace pelorino
