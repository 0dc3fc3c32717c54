#pragma once

#include "Clock.h"
#include "CurlExchange.h"
#include "NotificationHub.h"
#include "Random.h"
#include "RealExecutor.h"
#include "RealFacts.h"
#include "RealFiles.h"
#include "System.h"

namespace pelorino {

class RealClock final : public Clock {
 public:
  [[nodiscard]] std::int64_t milliseconds() const override;
};

/// Randomness of the operating system: nothing is kept between two calls, so that a forked process
/// repeats nothing.
class RealRandom final : public Random {
 public:
  [[nodiscard]] std::string uuid() override;
};

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
