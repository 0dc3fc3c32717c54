#include "MessagingCategoryRepository.h"

#include "JsonColumn.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::MessagingCategoryEntry;

constexpr Column<MessagingCategory> table[] = {
    column<&MessagingCategory::idKey>(Entry::id),
    column<&MessagingCategory::id>(Entry::identifier),
    column<&MessagingCategory::buttons>(Entry::buttons),
};

}  // namespace

std::span<const Column<MessagingCategory>> MessagingCategoryColumns::columns() {
  return table;
}

template class CachedRepository<MessagingCategory, MessagingCategoryColumns>;

}  // namespace pelorino
