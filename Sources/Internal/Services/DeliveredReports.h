#pragma once

#include <string>

namespace pelorino {

/// Reports that the backend has accepted and that someone may still hold to be waiting: a library
/// that starts while the exchange of the one before it ends has read the row already, and one that
/// starts after the disk has refused the deletion will.
///
/// Threads: any. Process-wide, as the network queue is.
class DeliveredReports final {
 public:
  DeliveredReports() = delete;

  static void add(const std::string& uuid);
  static void remove(const std::string& uuid);
  [[nodiscard]] static bool contains(const std::string& uuid);
};

}  // namespace pelorino
