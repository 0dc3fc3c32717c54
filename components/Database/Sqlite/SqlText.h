#pragma once

#include <span>
#include <string>
#include <string_view>

#include "DatabaseProtocol.h"

namespace pelorino {

/// The texts of the table operations.
struct SqlText final {
  static std::string select(const TableQuery& query);
  static std::string insert(std::string_view table, std::span<const std::string_view> columns);
  static std::string update(std::string_view table, std::span<const std::string_view> columns,
                            std::string_view selection);
  static std::string remove(std::string_view table, std::string_view selection);
};

}  // namespace pelorino
