#include "NotificationHub.h"

#include <utility>

namespace pelorino {

class NotificationHub::Registration final : public Observation {
 public:
  Registration(std::shared_ptr<Observers> observers, std::shared_ptr<Observer> observer)
      : observers_(std::move(observers)), observer_(std::move(observer)) {}

  ~Registration() override {
    observer_->isRemoved.store(true, std::memory_order_release);
    // The block is not destroyed under the lock: this object, or a post, still holds it.
    observers_->update([this](auto& all) { std::erase(all, observer_); });
  }

  Registration(const Registration&) = delete;
  Registration& operator=(const Registration&) = delete;

 private:
  std::shared_ptr<Observers> observers_;
  std::shared_ptr<Observer> observer_;
};

std::unique_ptr<NotificationCenter::Observation> NotificationHub::observe(
    ApplicationNotification name, Block block) {
  auto observer = std::make_shared<Observer>();
  observer->name = name;
  observer->block = std::move(block);
  auto registration = std::make_unique<Registration>(observers_, observer);
  observers_->update([&](auto& all) { all.push_back(std::move(observer)); });
  return registration;
}

void NotificationHub::post(ApplicationNotification name) {
  for (const auto& observer : observers_->get()) {
    if (observer->name == name && !observer->isRemoved.load(std::memory_order_acquire)) {
      observer->block();
    }
  }
}

}  // namespace pelorino
