#pragma once

#include <span>

#include "CachedRepository.h"
#include "Project.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct ProjectColumns {
  static constexpr auto tableName = SQLiteContracts::ProjectEntry::tableName;
  static std::span<const Column<Project>> columns();
};

extern template class CachedRepository<Project, ProjectColumns>;

/// The projects, one for each application key.
class ProjectRepository final : public CachedRepository<Project, ProjectColumns> {
 public:
  using CachedRepository::CachedRepository;
};

}  // namespace pelorino
