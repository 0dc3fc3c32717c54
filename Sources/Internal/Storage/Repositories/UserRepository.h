#pragma once

#include <span>

#include "CachedRepository.h"
#include "SQLiteContracts.h"
#include "User.h"

namespace pelorino {

struct UserColumns {
  static constexpr auto tableName = SQLiteContracts::UserEntry::tableName;
  static constexpr auto owner = &User::projectId;
  static std::span<const Column<User>> columns();
};

extern template class CachedRepository<User, UserColumns>;

/// The users of all projects.
class UserRepository final : public ProjectRowsRepository<User, UserColumns> {
 public:
  using ProjectRowsRepository::ProjectRowsRepository;
};

}  // namespace pelorino
