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

/// A sum, limited to the range of 32-bit integers.
struct BoundedSum {
  std::int64_t amount;
  bool isOverflowed;  ///< The true sum is outside that range.
};

/// The sum of any two numbers, limited to that range.
[[nodiscard]] BoundedSum boundedSum(std::int64_t a, std::int64_t b);

/// The fields that all sums have, for log lines.
[[nodiscard]] std::string sumText(RowId userId, std::string_view type, std::string_view name,
                                  std::int64_t amount);

/// Adds `resource` to the user's first sum of the same kind, or stores it as a new sum. Writes one
/// row. Cost: the sums of that user. incomeQueue only.
///
/// `Kind` describes the sums: `label` and `text` are for log lines, and `isSame` compares two
/// resources.
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
