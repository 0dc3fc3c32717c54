#include "LibraryThread.h"

#include <pthread.h>

#include <csignal>
#include <exception>
#include <thread>
#include <utility>

#include "ForkedChild.h"

namespace pelorino {
namespace {

/// Holds signals back on this thread; a thread that is started meanwhile inherits that.
class SignalsHeldBack {
 public:
  SignalsHeldBack() noexcept {
    sigset_t signals;
    sigfillset(&signals);
    // A blocked fault kills the process without the host's crash reporter having seen it.
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS, SIGABRT}) {
      sigdelset(&signals, fault);
    }
    pthread_sigmask(SIG_BLOCK, &signals, &former_);
  }
  ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

  [[nodiscard]] const sigset_t& former() const { return former_; }

 private:
  sigset_t former_{};
};

std::string visibleName(const std::string& label) {
  constexpr std::size_t keptBySystem = 15;
  // Labels differ in their last word: "com.pelorino.incomeQueue".
  const std::size_t dot = label.rfind('.');
  return label.substr(dot == std::string::npos ? 0 : dot + 1).substr(0, keptBySystem);
}

}  // namespace

bool startLibraryThread(const std::string& name, std::function<void()> body) noexcept {
  const SignalsHeldBack heldBack;
  ForkedChild::arm();
  try {
    const sigset_t signals = ForkedChild::signalsOfHost().value_or(heldBack.former());
    std::thread([shown = visibleName(name), body = std::move(body), signals] {
      ForkedChild::markLibraryThread(signals);
      pthread_setname_np(pthread_self(), shown.c_str());
      body();
    }).detach();
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace pelorino
