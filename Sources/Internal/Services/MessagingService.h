#pragma once

#include <vector>

#include "Backend.h"
#include "HostClosure.h"
#include "MessagingConfig.h"
#include "Repositories.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// How an answer of the backend changes a list of categories.
struct CategoriesUpdate {
  std::vector<MessagingCategory> merged;   ///< The new list.
  std::vector<MessagingCategory> added;    ///< Not in the old list.
  std::vector<MessagingCategory> removed;  ///< Not in the new list; may contain added ones.
};

/// A category that is in the list already stays as it is, even if the backend sends it again.
[[nodiscard]] CategoriesUpdate updated(const std::vector<MessagingCategory>& current,
                                       const MessagingConfig& config);

/// Stores the backend's categories of notifications. All projects share the rows; each project has
/// its own version number of the last answer.
///
/// Threads: the incomeQueue only; requests run on the networkMessagingQueue.
/// Errors:  logged; the callback gets the stored categories.
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

  /// Asks the backend for changes and calls back with the new list. The callback gets the old list
  /// if the backend cannot be asked, if its answer cannot be used, or if the run has ended. It runs
  /// on the networkMessagingQueue, or within this call if the device data is missing. May wait for
  /// the device data.
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
