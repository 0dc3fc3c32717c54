#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Identifiers.h"
#include "JsonCoding.h"
#include "Package.h"

namespace pelorino {

/// The unit of delivery: one row of the table `reports`, one request, one success or failure.
///
/// Threads: the incomeQueue; while a batch is under way the network queue reads it and nobody
/// writes it.
class Report final {
 public:
  /// A report made in memory, with a fresh `uuid`.
  explicit Report(std::vector<Package> with);

  /// A report that is to be filled from its row: without a `uuid` so far.
  Report() = default;

  std::int64_t idKey = -1;
  std::int64_t userId = -1;                 ///< `idKey` of the owning user.
  std::optional<std::string> packagesJson;  ///< As read from the row; absent when made in memory.
  std::vector<Package> packages;
  std::string uuid;  ///< 36 characters; names the report in the log and is never sent.
  std::optional<std::string> appKey;       ///< Filled just before sending.
  std::optional<Identifiers> identifiers;  ///< Filled just before sending.

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("packages", self.packages);
  }
};

/// The outermost JSON object of a delivery.
struct Reports {
  std::vector<std::shared_ptr<const Report>> reports;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("reports", self.reports);
  }
};

inline void encode(JsonWriter& json, const std::shared_ptr<const Report>& report) {
  encode(json, *report);
}

}  // namespace pelorino
