#pragma once

#include <memory>
#include <utility>

#include "BackendProtocol.h"
#include "CurrencyAccrualResourcesRepository.h"
#include "DatabaseProtocol.h"
#include "EventRepository.h"
#include "IdentifiersRepository.h"
#include "LevelResourcesRepository.h"
#include "LifeCycleRepository.h"
#include "MessagingCategoryRepository.h"
#include "PeopleRepository.h"
#include "PlatformProtocol.h"
#include "Product.h"
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
      : lifeCycle_(std::move(lifeCycle)),
        backend_(std::move(backend)),
        platform_(std::move(platform)),
        database_(std::move(database)) {}

  [[nodiscard]] const auto& lifeCycle() const { return lifeCycle_; }
  [[nodiscard]] const auto& backend() const { return backend_; }
  [[nodiscard]] const auto& platform() const { return platform_; }
  [[nodiscard]] const auto& database() const { return database_; }

  void setLifeCycleListener(std::weak_ptr<LifeCycleProtocol> lifeCycleListener) {
    lifeCycle_->setLifeCycleListener(std::move(lifeCycleListener));
  }

  const auto& projectRepository() { return projectRepository_.get(database_); }
  const auto& userRepository() { return userRepository_.get(database_); }
  const auto& identifiersRepository() { return identifiersRepository_.get(database_); }
  const auto& eventRepository() { return eventRepository_.get(database_); }
  const auto& reportsRepository() { return reportsRepository_.get(database_); }
  const auto& currencyAccrualResourcesRepository() {
    return currencyAccrualResourcesRepository_.get(database_);
  }
  const auto& levelResourcesRepository() { return levelResourcesRepository_.get(database_); }
  const auto& realPaymentRepository() { return realPaymentRepository_.get(database_); }
  const auto& tutorialRepository() { return tutorialRepository_.get(database_); }
  const auto& peopleRepository() { return peopleRepository_.get(database_); }
  const auto& messagingCategoryRepository() { return messagingCategoryRepository_.get(database_); }
  const auto& toolsRepository() { return toolsRepository_.get(database_); }
  const auto& subscriptionRepository() { return subscriptionRepository_.get(database_); }

 private:
  std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle_;
  std::shared_ptr<BackendProtocol> backend_;
  std::shared_ptr<PlatformProtocol> platform_;
  std::shared_ptr<DatabaseProtocol> database_;
  Product<ProjectRepository> projectRepository_;
  Product<UserRepository> userRepository_;
  Product<IdentifiersRepository> identifiersRepository_;
  Product<EventRepository> eventRepository_;
  Product<ReportsRepository> reportsRepository_;
  Product<CurrencyAccrualResourcesRepository> currencyAccrualResourcesRepository_;
  Product<LevelResourcesRepository> levelResourcesRepository_;
  Product<RealPaymentRepository> realPaymentRepository_;
  Product<TutorialRepository> tutorialRepository_;
  Product<PeopleRepository> peopleRepository_;
  Product<MessagingCategoryRepository> messagingCategoryRepository_;
  Product<ToolsRepository> toolsRepository_;
  Product<SubscriptionRepository> subscriptionRepository_;
};

}  // namespace pelorino
