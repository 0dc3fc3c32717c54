#include "ResourceSums.h"

#include <limits>

namespace pelorino {

BoundedSum boundedSum(std::int64_t a, std::int64_t b) {
  using Range = std::numeric_limits<std::int32_t>;
  std::int64_t sum = 0;
  // Stored amounts may be any number. A sum too large for 64 bits has the sign of its parts.
  if (__builtin_add_overflow(a, b, &sum)) return {a < 0 ? Range::min() : Range::max(), true};
  const auto amount = std::clamp<std::int64_t>(sum, Range::min(), Range::max());
  return {amount, amount != sum};
}

std::string sumText(RowId userId, std::string_view type, std::string_view name,
                    std::int64_t amount) {
  return fmt::format("\t userId: {}, \n\t type: {}, \n\t name: {}, \n\t amount: {}", userId, type,
                     name, amount);
}

}  // namespace pelorino
