#pragma once

#include <concepts>
#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

#include "ExitGate.h"
#include "ForkedChild.h"
#include "Guarded.h"

namespace pelorino {

/// What the exit of the process means for a thread that is about to run code of the host.
enum class HostEntry {
  /// Exit waits a moment for it. Too late, a thread of the library sleeps until the process is
  /// gone; one of the host, which exit may join, goes on without running the code.
  awaited,
  /// Likewise, but no thread sleeps: it may hold a lock that the exiting thread wants.
  neverSleeping,
  /// On a thread of the library, for code that may take long: it does not begin too late, and exit
  /// leaves it behind.
  unawaited,
};

/// Held while a thread runs code of the host, which it enters as HostEntry::awaited says.
class HostPass {
 public:
  HostPass();

  [[nodiscard]] bool isInside() const { return pass_.isInside(); }

 private:
  const ExitGate::TryPass pass_;
};

/// Runs code of the host. What it throws ends here: `onError` gets its words, or null where it has
/// none. In a process that was forked off by that code, on a thread of the library, this is the
/// end.
template <HostEntry entry = HostEntry::awaited, class Work, class OnError>
void runHostCode(Work&& work, OnError&& onError) {
  const auto guarded = [&] {
    try {
      std::forward<Work>(work)();
    } catch (const std::exception& error) {
      onError(error.what());
    } catch (...) {
      onError(static_cast<const char*>(nullptr));
    }
  };
  if constexpr (entry == HostEntry::unawaited) {
    ExitGate::parkIfClosed();
    const ForkedChild::HostCode inside;
    guarded();
  } else {
    const std::conditional_t<entry == HostEntry::awaited, HostPass, ExitGate::TryPass> pass;
    if (pass.isInside()) guarded();
  }
}

/// Nothing of the host's runs any more when exit destroys what was made until now.
void closeHostCodeAtExit();

/// Something of the host's that the library holds: a std::function or a std::shared_ptr. Its end is
/// code of the host, too, and is run as such. One thread at a time.
template <class Handle>
class HostHeld {
 public:
  constexpr HostHeld() = default;
  template <std::convertible_to<Handle> Given>
  HostHeld(Given given)  // NOLINT(google-explicit-constructor): as its handle takes it.
      : handle_(std::move(given)) {}
  ~HostHeld() { reset(); }
  HostHeld(const HostHeld&) = default;
  HostHeld(HostHeld&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  HostHeld& operator=(HostHeld other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }

  [[nodiscard]] explicit operator bool() const { return handle_ != nullptr; }
  [[nodiscard]] const Handle& handle() const { return handle_; }

  /// Runs `work` with the handle, if there is one: see runHostCode().
  template <class Work, class OnError>
  void run(Work&& work, OnError&& onError) const {
    if (handle_) runHostCode([&] { work(handle_); }, std::forward<OnError>(onError));
  }

  /// What the host's own thread lets go of while the process exits ends outside.
  void reset() noexcept {
    if (!handle_) return;
    const HostPass pass;
    handle_ = nullptr;
  }

 private:
  Handle handle_{};
};

/// A place for what the host gives the library to hold until it gives another. Any thread.
template <class Handle>
class HostSlot {
 public:
  using Held = std::shared_ptr<const HostHeld<Handle>>;  ///< Null for none.

  /// None, too, in a forked child where a thread that is gone has taken the lock.
  [[nodiscard]] Held get() const {
    return ForkedChild::isHere() ? slot_.tryGet().value_or(nullptr) : slot_.get();
  }

  /// Gives back what was there.
  Held exchange(Handle given) {
    if (given) closeHostCodeAtExit();
    Held held = given ? std::make_shared<const HostHeld<Handle>>(std::move(given)) : nullptr;
    slot_.update([&](Held& current) { std::swap(current, held); });
    return held;
  }
  void set(Handle given) { exchange(std::move(given)); }

 private:
  Guarded<Held> slot_;
};

}  // namespace pelorino
