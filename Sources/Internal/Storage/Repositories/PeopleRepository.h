#pragma once

#include <span>

#include "CachedRepository.h"
#include "PeopleCard.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct PeopleColumns {
  static constexpr auto tableName = SQLiteContracts::PeopleCardEntry::tableName;
  static constexpr auto owner = &PeopleCard::userId;
  static std::span<const Column<PeopleCard>> columns();
};

extern template class CachedRepository<PeopleCard, PeopleColumns>;

/// The cards of all users.
class PeopleRepository final : public UserRowsRepository<PeopleCard, PeopleColumns> {
 public:
  using UserRowsRepository::UserRowsRepository;
};

}  // namespace pelorino
