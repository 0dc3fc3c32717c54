#pragma once

#include <pelorino/PLRAccrualType.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "RowId.h"

namespace pelorino {

/// Amounts by the name of the resource or currency.
using Resources = std::map<std::string, std::int64_t>;

/// What a user did with an amount of a resource within a level. The numbers are stored: do not
/// change them.
enum class LevelResourceType : int {
  earned = 0,
  bought = 1,
  spent = 2,
};

/// "earned", "bought" or "spent".
[[nodiscard]] constexpr std::string_view description(LevelResourceType type) {
  constexpr std::array<std::string_view, 3> texts = {"earned", "bought", "spent"};
  return texts.at(static_cast<std::size_t>(type));
}

/// How much of one resource a user earned, bought or spent within the current level. A row;
/// incomeQueue only.
struct LevelResource {
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;
  LevelResourceType type = LevelResourceType::earned;
  std::string name;
  std::int64_t amount = 0;
};

/// How much of one currency a user got from one source since the last report. A row; incomeQueue
/// only.
struct CurrencyAccrualResource {
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;
  PLRAccrualType type = PLRAccrualType::earned;
  std::string name;
  std::int64_t amount = 0;
  std::string source;
  std::int64_t timestamp = 0;  ///< Of the last change, milliseconds since 1970.
};

}  // namespace pelorino
