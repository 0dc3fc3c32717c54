#pragma once

#include <span>

#include "CachedRepository.h"
#include "SQLiteContracts.h"
#include "TutorialMark.h"

namespace pelorino {

struct TutorialColumns {
  static constexpr auto tableName = SQLiteContracts::TutorialMarkEntry::tableName;
  static constexpr auto owner = &TutorialMark::userId;
  static std::span<const Column<TutorialMark>> columns();
};

extern template class CachedRepository<TutorialMark, TutorialColumns>;

/// Tutorial steps that have been reported.
class TutorialRepository final : public UserRowsRepository<TutorialMark, TutorialColumns> {
 public:
  using UserRowsRepository::UserRowsRepository;
};

}  // namespace pelorino
