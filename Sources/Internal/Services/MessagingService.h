#pragma once

#include <vector>

#include "Backend.h"
#include "HostClosure.h"
#include "MessagingConfig.h"
#include "Repositories.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// What an answer of the backend makes of a list of categories.
struct CategoriesUpdate {
  std::vector<MessagingCategory> merged;   ///< The list afterwards.
  std::vector<MessagingCategory> added;    ///< What of it is new.
  std::vector<MessagingCategory> removed;  ///< What has gone, new ones included.
};

/// A category that the backend sends again does not replace the one that is there.
[[nodiscard]] CategoriesUpdate updated(const std::vector<MessagingCategory>& current,
                                       const MessagingConfig& config);

/// Keeps the categories of notifications as the backend has them. The rows are common to all
/// projects; the version that was last received belongs to the active one.
///
/// Threads: the incomeQueue only; requests and answers run on the networkMessagingQueue.
class MessagingService final {
 public:
  using Categories = std::vector<MessagingCategory>;
  using Callback = HostClosure<void(const Categories& categories)>;

  MessagingService(Run& run, StateManager& stateManager, BackendProtocol& backend,
                   ProjectRepository& projectRepository,
                   MessagingCategoryRepository& messagingCategoryRepository)
      : run_(run),
        stateManager_(stateManager),
        backend_(backend),
        projectRepository_(projectRepository),
        messagingCategoryRepository_(messagingCategoryRepository) {}

  /// Asks the backend for changes and gives the list as it is then; the list as it was where the
  /// backend cannot be asked or its answer not be used, and after a teardown. The callback runs on
  /// the networkMessagingQueue, or here when nothing can be asked. Can wait for the device data.
  void getPushCategories(Callback callback);

 private:
  [[nodiscard]] Categories categories() const;
  /// On the networkMessagingQueue.
  [[nodiscard]] Categories updateSavedConfig(const MessagingConfig& config,
                                             const Categories& currentCategories);
  void store(const MessagingConfig& config);

  Run& run_;
  StateManager& stateManager_;
  BackendProtocol& backend_;
  ProjectRepository& projectRepository_;
  MessagingCategoryRepository& messagingCategoryRepository_;
};

}  // namespace pelorino
