#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "Dice.h"
#include "HttpExchange.h"
#include "Record.h"

namespace pelorino {

/// A backend that answers as a seed chooses, or does not.
///
/// Threads: those of the deterministic system, one at a time.
class BackendModel final {
 public:
  using Listener = std::function<void(Record::Kind, Row)>;

  BackendModel(std::uint64_t seed, std::int64_t life, Listener listener)
      : dice_(seed), listener_(std::move(listener)), categoriesVersion_(life * 1'000'000) {}

  /// How many of the exchanges fail, and how many of the others are slow.
  void setHealth(std::int64_t percentFailing, std::int64_t percentSlow) {
    percentFailing_ = percentFailing;
    percentSlow_ = percentSlow;
  }

  /// Decides upon the exchange that answer() is asked for next.
  [[nodiscard]] std::chrono::milliseconds latency(const HttpRequest& request);
  [[nodiscard]] HttpResponse answer(const HttpRequest& request);

 private:
  struct Plan {
    std::chrono::milliseconds latency{0};
    bool isAccepted = true;
    bool isWhole = true;  ///< The answer arrives.
    int status = 200;
    bool isGarbage = false;
  };

  [[nodiscard]] Plan failingPlan(const HttpRequest& request);
  [[nodiscard]] std::string bodyFor(const std::string& path, const HttpRequest& request);
  [[nodiscard]] std::string configuration();
  [[nodiscard]] std::string categories();

  Dice dice_;
  Listener listener_;
  std::int64_t percentFailing_ = 0;
  std::int64_t percentSlow_ = 0;
  std::int64_t categoriesVersion_;  ///< Of the last answer.
  Plan plan_;
};

}  // namespace pelorino
