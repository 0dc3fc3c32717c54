#pragma once

#include <string>

namespace pelorino {

/// Reports that the backend has accepted, but whose row may still be stored: never send them again.
/// The disk may refuse to delete the row, or the next run of the library may have read it before it
/// was deleted.
///
/// Threads: any. Process-wide: it outlives a run.
class DeliveredReports final {
 public:
  DeliveredReports() = delete;

  static void add(const std::string& uuid);
  static void remove(const std::string& uuid);
  [[nodiscard]] static bool contains(const std::string& uuid);
};

}  // namespace pelorino
