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
  /// Exit waits a moment for it. After exit has begun the code does not run: a thread of the
  /// library
  /// sleeps until the process has ended, one of the host goes on, since exit may join it.
  awaited,
  /// Likewise, but no thread sleeps: it may hold a lock that the exiting thread wants.
  neverSleeping,
  /// For code that may take long, on a thread of the library. It does not begin after exit has
  /// begun, and exit does not wait for it.
  unawaited,
};

/// Held while a thread runs code of the host. It enters as HostEntry::awaited says.
class HostPass {
 public:
  HostPass();

  [[nodiscard]] bool isInside() const { return pass_.isInside(); }

 private:
  const ExitGate::TryPass pass_;
};

/// Runs code of the host. An exception ends here: `onError` gets its text, or null if it is no
/// std::exception. A child process that this code forks on a thread of the library ends here.
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

/// Call it before a start: no code of the host runs any more when exit destroys what exists by now.
void closeHostCodeAtExit();

/// Something of the host's that the library holds: a std::function or a std::shared_ptr. Destroying
/// it is code of the host, too, and is run as such. One thread at a time.
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

  /// If the host's own thread destroys this during exit, the handle is destroyed without waiting.
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

  /// Also none in a forked child, if the lock was taken at the fork by a thread that is gone.
  [[nodiscard]] Held get() const {
    return ForkedChild::isHere() ? slot_.tryGet().value_or(nullptr) : slot_.get();
  }

  /// Returns the old one.
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
