#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "QueueManager.h"

namespace pelorino {

/// Returns `isInitialized`. If it is false, logs that the call is refused.
bool validateInitialization(std::string_view label, bool isInitialized);

/// Moves public calls from the caller's thread to the incomeQueue. A front exists from the first
/// public call on, but its logic exists only during a run.
///
/// Threads: any, but the logic is set and used on the incomeQueue only.
/// Owns:    nothing: the logic is borrowed from the run.
template <class Logic>
class ModuleFront : public std::enable_shared_from_this<ModuleFront<Logic>> {
 public:
  /// With null, calls are refused.
  void setLogic(Logic* logic) { logic_ = logic; }

 protected:
  ~ModuleFront() = default;

  /// Adds a block that runs `work(logic)`. The logic is null if there is no run then. If the front
  /// is gone, the block runs `whenGone()` instead.
  template <class Work, class WhenGone>
  void enqueue(Work work, WhenGone whenGone) {
    QueueManager::incomeQueue().addOperation([weak = this->weak_from_this(), work = std::move(work),
                                              whenGone = std::move(whenGone)]() mutable {
      const auto self = weak.lock();
      self ? work(self->logic_) : whenGone();
    });
  }

  template <class Work>
  void enqueue(Work work) {
    enqueue(std::move(work), [] {});
  }

  /// The same, but first logs that the call is refused if there is no logic.
  template <class Work>
  void post(const char* label, Work work) {
    enqueue([label, work = std::move(work)](Logic* logic) mutable {
      work(validateInitialization(label, logic != nullptr) ? logic : nullptr);
    });
  }

 private:
  Logic* logic_ = nullptr;
};

}  // namespace pelorino
