#pragma once

#include <memory>
#include <string_view>
#include <utility>

#include "QueueManager.h"

namespace pelorino {

/// Gives back whether the library has been started; otherwise writes the line that refuses the
/// call.
bool validateInitialization(std::string_view label, bool isInitialized);

/// Where a public call leaves the caller's thread: it becomes a block on the incomeQueue. A front
/// is there from the first public call on; the logic behind it only while a run lasts.
///
/// Threads: any; the logic is given and used on the incomeQueue.
template <class Logic>
class ModuleFront : public std::enable_shared_from_this<ModuleFront<Logic>> {
 public:
  /// Null takes it away, and calls are refused again.
  void setLogic(Logic* logic) { logic_ = logic; }

 protected:
  ~ModuleFront() = default;

  /// Runs `work(logic)` as a block, with null while no run lasts. Once the front has gone,
  /// `whenGone()` runs in its place.
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

  /// The same, behind the line that refuses the call where there is no logic.
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
