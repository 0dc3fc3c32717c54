#pragma once

#include <memory>
#include <string_view>

#include "Block.h"
#include "Executor.h"
#include "Guarded.h"

namespace pelorino {

/// Runs blocks, and passes an exception that leaves one to the handler only. Any thread; the
/// handler runs on the thread of the block.
class ExceptionOutlet final {
 public:
  void setHandler(Executor::ExceptionHandler handler);

  /// `queue` is the label that the handler is told.
  void run(const Block& block, std::string_view queue) const noexcept;

 private:
  void report(std::string_view queue, std::string_view what) const noexcept;

  Guarded<std::shared_ptr<const Executor::ExceptionHandler>> handler_;
};

}  // namespace pelorino
