#pragma once

#include <memory>
#include <utility>

#include "BackendProtocol.h"
#include "CurrencyAccrualResourcesRepository.h"
#include "DatabaseProtocol.h"
#include "EventRepository.h"
#include "IdentifiersRepository.h"
#include "Lazy.h"
#include "LevelResourcesRepository.h"
#include "LifeCycleRepository.h"
#include "MessagingCategoryRepository.h"
#include "PeopleRepository.h"
#include "PlatformProtocol.h"
#include "ProjectRepository.h"
#include "RealPaymentRepository.h"
#include "ReportsRepository.h"
#include "SubscriptionRepository.h"
#include "ToolsRepository.h"
#include "TutorialRepository.h"
#include "UserRepository.h"

namespace pelorino {

/// Holds the four base objects and makes the repositories, each on its first use and once, so that
/// all users of a table share one cache.
///
/// Threads: the incomeQueue only.
class CoreFactory final {
 public:
  CoreFactory(std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle,
              std::shared_ptr<BackendProtocol> backend, std::shared_ptr<PlatformProtocol> platform,
              std::shared_ptr<DatabaseProtocol> database)
      : lifeCycle(std::move(lifeCycle)),
        backend(std::move(backend)),
        platform(std::move(platform)),
        database(std::move(database)) {}

  const std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle;
  const std::shared_ptr<BackendProtocol> backend;
  const std::shared_ptr<PlatformProtocol> platform;
  const std::shared_ptr<DatabaseProtocol> database;

  void setLifeCycleListener(std::weak_ptr<LifeCycleProtocol> lifeCycleListener) {
    lifeCycle->setLifeCycleListener(std::move(lifeCycleListener));
  }

  const auto& projectRepository() { return projectRepository_.get(database); }
  const auto& userRepository() { return userRepository_.get(database); }
  const auto& identifiersRepository() { return identifiersRepository_.get(database); }
  const auto& eventRepository() { return eventRepository_.get(database); }
  const auto& reportsRepository() { return reportsRepository_.get(database); }
  const auto& currencyAccrualResourcesRepository() {
    return currencyAccrualResourcesRepository_.get(database);
  }
  const auto& levelResourcesRepository() { return levelResourcesRepository_.get(database); }
  const auto& realPaymentRepository() { return realPaymentRepository_.get(database); }
  const auto& tutorialRepository() { return tutorialRepository_.get(database); }
  const auto& peopleRepository() { return peopleRepository_.get(database); }
  const auto& messagingCategoryRepository() { return messagingCategoryRepository_.get(database); }
  const auto& toolsRepository() { return toolsRepository_.get(database); }
  const auto& subscriptionRepository() { return subscriptionRepository_.get(database); }

 private:
  Lazy<ProjectRepository> projectRepository_;
  Lazy<UserRepository> userRepository_;
  Lazy<IdentifiersRepository> identifiersRepository_;
  Lazy<EventRepository> eventRepository_;
  Lazy<ReportsRepository> reportsRepository_;
  Lazy<CurrencyAccrualResourcesRepository> currencyAccrualResourcesRepository_;
  Lazy<LevelResourcesRepository> levelResourcesRepository_;
  Lazy<RealPaymentRepository> realPaymentRepository_;
  Lazy<TutorialRepository> tutorialRepository_;
  Lazy<PeopleRepository> peopleRepository_;
  Lazy<MessagingCategoryRepository> messagingCategoryRepository_;
  Lazy<ToolsRepository> toolsRepository_;
  Lazy<SubscriptionRepository> subscriptionRepository_;
};

}  // namespace pelorino
