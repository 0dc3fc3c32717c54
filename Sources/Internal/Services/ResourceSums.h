#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "Logger.h"
#include "RowId.h"

namespace pelorino {

/// A sum held within the range of 32-bit integers.
struct BoundedSum {
  std::int64_t amount;
  bool isOverflowed;  ///< The true sum lies beyond the range.
};

[[nodiscard]] BoundedSum boundedSum(std::int64_t a, std::int64_t b);

/// The fields that all sums have, as the log shows them.
[[nodiscard]] std::string sumText(RowId userId, std::string_view type, std::string_view name,
                                  std::int64_t amount);

/// Adds `resource` to the first sum of its user that is kept for the same thing; begins a new sum
/// when there is none. One write to the table; cost: the sums of that user.
///
/// `Kind` tells one kind of sums from another: its `label` in the log, `isSame` of two resources,
/// and the `text` of one.
template <class Kind, class Repository, class Resource>
void addToSums(Repository& repository, Resource resource) {
  const auto known = repository.findOfUser(
      resource.userId, [&](const Resource& row) { return Kind::isSame(row, resource); });
  if (!known) {
    repository.insert(std::make_shared<Resource>(resource));
  } else {
    const auto [amount, isOverflowed] = boundedSum(known->amount, resource.amount);
    if (isOverflowed) {
      Logger::writeLog(PLRLogLevel::error, [&, label = Kind::label] {
        return fmt::format("{} resource: {} is overflowed", label, resource.name);
      });
    }
    resource.idKey = known->idKey;
    resource.amount = amount;
    *known = resource;
    repository.update(resource);
  }
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("{} {} resources: \n{} ", known ? "Update" : "Insert", Kind::label,
                       Kind::text(resource));
  });
}

}  // namespace pelorino
