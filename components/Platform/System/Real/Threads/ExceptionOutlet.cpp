#include "ExceptionOutlet.h"

#include <exception>
#include <utility>

namespace pelorino {

void ExceptionOutlet::setHandler(Executor::ExceptionHandler handler) {
  handler_.set(std::make_shared<const Executor::ExceptionHandler>(std::move(handler)));
}

void ExceptionOutlet::run(const Block& block, std::string_view queue) const noexcept {
  try {
    if (block) block();
  } catch (const std::exception& error) {
    report(queue, error.what());
  } catch (...) {
    report(queue, "an exception of unknown type");
  }
}

void ExceptionOutlet::report(std::string_view queue, std::string_view what) const noexcept {
  const auto handler = handler_.get();
  if (!handler || !*handler) return;
  try {
    (*handler)(queue, what);
  } catch (...) {  // NOLINT(bugprone-empty-catch)
    // The handler was the only outlet there is.
  }
}

}  // namespace pelorino
