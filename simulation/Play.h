#pragma once

#include <cstdint>
#include <string>

#include "Device.h"
#include "Dice.h"

namespace pelorino {

/// What the host and its user do in one life of the process, as a seed chooses.
class Play final {
 public:
  Play(Device& device, const LifePlan& plan);

  void run();

 private:
  void initialize();
  void step();
  void reportSomething();
  /// One of the tool's tracking commands, with the arguments of its sample.
  void reportAnything();
  void changeIdentity();
  void changeCard();
  void accrue();
  /// Categories, a receipt, or a push token.
  void askBackend();
  void visitBackground();
  void changeWorld();
  void sleep();
  void settle();
  [[nodiscard]] bool isStarted();
  [[nodiscard]] std::string someUser();

  Device& device_;
  const LifePlan& plan_;
  Dice dice_;
  std::int64_t serial_ = 0;
};

}  // namespace pelorino
