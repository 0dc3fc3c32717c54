#include "DeliveredReports.h"

#include <set>

#include "Guarded.h"

namespace pelorino {
namespace {

using Uuids = std::set<std::string>;

/// Never destroyed: a queue may still use it while the process exits.
Guarded<Uuids>& delivered() {
  static auto& uuids = *new Guarded<Uuids>;
  return uuids;
}

}  // namespace

void DeliveredReports::add(const std::string& uuid) {
  delivered().update([&](Uuids& uuids) { uuids.insert(uuid); });
}

void DeliveredReports::remove(const std::string& uuid) {
  delivered().update([&](Uuids& uuids) { uuids.erase(uuid); });
}

bool DeliveredReports::contains(const std::string& uuid) {
  return delivered().update([&](const Uuids& uuids) { return uuids.contains(uuid); });
}

}  // namespace pelorino
