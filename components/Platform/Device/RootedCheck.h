#pragma once

#include <functional>

#include "Executor.h"
#include "HostClosure.h"

namespace pelorino {

/// Answers whether the device has been tampered with.
class RootedCheckProtocol {
 public:
  using CompletionHandler = std::function<void(bool isRooted)>;

  virtual ~RootedCheckProtocol() = default;

  /// Answers once, on any thread, possibly before it returns.
  virtual void isRooted(CompletionHandler completionHandler) = 0;
};

/// Asks the host's integrity probe, on the main queue. Without one the answer is false.
class RootedCheck final : public RootedCheckProtocol {
 public:
  using Probe = HostClosure<bool()>;

  /// `probe` returns the probe to run, at the time it runs. `mainQueue` outlives this object.
  RootedCheck(std::function<Probe()> probe, SerialQueue& mainQueue, bool isSimulator);

  /// On a simulator the answer is false, at once. Otherwise it comes on the main queue. A probe
  /// that throws counts as false.
  void isRooted(CompletionHandler completionHandler) override;

 private:
  std::function<Probe()> probe_;
  SerialQueue& mainQueue_;
  bool isSimulator_;
};

}  // namespace pelorino
