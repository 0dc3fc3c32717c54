#include "MessagingService.h"

#include <fmt/format.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "BackendRepository.h"
#include "Logger.h"
#include "QueueManager.h"
#include "SdkConstraints.h"

namespace pelorino {

CategoriesUpdate updated(const std::vector<MessagingCategory>& current,
                         const MessagingConfig& config) {
  CategoriesUpdate update{.merged = current, .added = {}, .removed = {}};
  std::unordered_map<std::string, const MessagingCategory*> byId;
  for (const MessagingCategory& category : current) byId.emplace(category.id, &category);
  for (const MessagingCategory& category : config.categories) {
    if (!byId.emplace(category.id, &category).second) continue;
    update.merged.push_back(category);
    update.added.push_back(category);
  }
  if (!config.removed) return update;
  for (const std::string& id : *config.removed) {
    if (const auto found = byId.find(id); found != byId.end()) {
      update.removed.push_back(*found->second);
    }
  }
  const std::unordered_set<std::string> removed(config.removed->begin(), config.removed->end());
  std::erase_if(update.merged,
                [&](const MessagingCategory& category) { return removed.contains(category.id); });
  return update;
}

void MessagingService::getPushCategories(Callback callback) {
  const Project& project = *stateManager_.getActiveProject();
  auto identifiers = stateManager_.getIdentifiers(*stateManager_.getActiveUser());
  auto appVersion = stateManager_.getAppData().applicationVersion;
  Categories current = categories();
  const auto device = stateManager_.getDeviceData();
  if (!device) {
    Logger::writeLog(PLRLogLevel::error, "Cannot obtain device information!");
    return callHost(callback, current);
  }
  MessagingRequestObject request{.sdkVersion = SdkConstraints::sdkVersion(),
                                 .sdkCodeVersion = SdkConstraints::sdkCodeVersion,
                                 .appVersion = std::move(appVersion),
                                 .categoriesVersion = project.categoriesVersion.value_or(0),
                                 .language = device->language};
  run_.addTold(QueueManager::networkMessagingQueue(), [this, callback = std::move(callback),
                                                       current = std::move(current),
                                                       request = std::move(request),
                                                       identifiers = std::move(identifiers),
                                                       key = project.applicationKey](bool lasts) {
    if (!lasts) return callHost(callback, current);
    Logger::writeLog(PLRLogLevel::debug,
                     "[Messaging Module] Trying to get push categories from the server");
    const auto config =
        backend_.ask(BackendRepository::requestMessagingConfig, key, identifiers, request).answer;
    callHost(callback, config ? updateSavedConfig(*config, current) : current);
  });
}

MessagingService::Categories MessagingService::categories() const {
  Categories all;
  for (const auto& category : messagingCategoryRepository_.list()) all.push_back(*category);
  return all;
}

MessagingService::Categories MessagingService::updateSavedConfig(
    const MessagingConfig& config, const Categories& currentCategories) {
  run_.add(QueueManager::incomeQueue(), [this, config] { store(config); });
  CategoriesUpdate update = updated(currentCategories, config);
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format(
        "[Messaging Module] Update push categories:\n\tsaved new categories: [{}]\n\tremoved "
        "categories [{}]\n\tcurrent categories version: [{}]",
        update.added.size(), update.removed.size(), config.version);
  });
  return std::move(update.merged);
}

/// Compares with the rows as they are now: another answer may have come since the request.
void MessagingService::store(const MessagingConfig& config) {
  const CategoriesUpdate update = updated(categories(), config);
  for (const MessagingCategory& category : update.added) {
    static_cast<void>(
        messagingCategoryRepository_.insert(std::make_shared<MessagingCategory>(category)));
  }
  // A category that one answer both adds and removes has no row id here. Its row stays.
  std::vector<std::shared_ptr<MessagingCategory>> removed;
  for (const MessagingCategory& category : update.removed) {
    removed.push_back(std::make_shared<MessagingCategory>(category));
  }
  messagingCategoryRepository_.deleteItems(removed);
  Project& project = *stateManager_.getActiveProject();
  project.categoriesVersion = config.version;
  projectRepository_.update(project);
}

}  // namespace pelorino
