#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace pelorino {

/// Amounts by the name of the resource or currency.
using Resources = std::map<std::string, std::int64_t>;

}  // namespace pelorino
