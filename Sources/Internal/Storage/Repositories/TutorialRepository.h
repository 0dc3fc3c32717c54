#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Marks.h"

namespace pelorino {

/// Tutorial steps that have been reported.
class TutorialRepository final : public UserRowsRepository<TutorialMark> {
 public:
  explicit TutorialRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
