#pragma once

#include "CurlExchange.h"
#include "NotificationHub.h"
#include "RealClock.h"
#include "RealExecutor.h"
#include "RealFacts.h"
#include "RealFiles.h"
#include "RealRandom.h"
#include "System.h"

namespace pelorino {

/// The operating system itself. Making it starts nothing.
class RealSystem final : public System {
 public:
  Clock& clock() override { return clock_; }
  Executor& executor() override { return executor_; }
  HttpExchange& http() override { return http_; }
  NotificationCenter& notifications() override { return notifications_; }
  Random& random() override { return random_; }
  Files& files() override { return files_; }
  Facts& facts() override { return facts_; }
  [[nodiscard]] std::unique_ptr<KeyStore> openKeyStore(const std::string& path) override;

 private:
  RealClock clock_;
  RealExecutor executor_;
  CurlExchange http_;
  NotificationHub notifications_;
  RealRandom random_;
  RealFiles files_;
  RealFacts facts_;
};

}  // namespace pelorino
