#include "Report.h"

#include <utility>

#include "JsonHelpers.h"
#include "System.h"

namespace pelorino {

Report::Report(std::vector<Package> with)
    : packages(std::move(with)), uuid(System::current().random().uuid()) {}

Report::Report(std::int64_t storedId, std::int64_t storedUserId,
               std::optional<std::string> storedPackages, std::string storedUuid)
    : idKey(storedId),
      userId(storedUserId),
      packagesJson(std::move(storedPackages)),
      uuid(std::move(storedUuid)) {
  if (packagesJson)
    packages = from<std::vector<Package>>(*packagesJson).value_or(std::vector<Package>());
}

}  // namespace pelorino
