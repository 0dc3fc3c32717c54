#include "CurlLibrary.h"

#include <curl/curl.h>
#include <dlfcn.h>

#include <cstdint>

#include "ExitGate.h"
#include "ForkedChild.h"

namespace pelorino::CurlLibrary {
namespace {

// libcurl speaks TLS through OpenSSL on most systems, and this library is not linked with it. Both
// functions are absent, and not needed, where libcurl uses something else.
template <class Function>
Function* openSslFunction(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_DEFAULT, name));
}

/// OpenSSL frees its state in an exit handler, which it registers early in a set-up that takes
/// almost a millisecond. An exit in that time would run that handler ahead of the gate's, with this
/// thread still inside OpenSSL. So OpenSSL is asked to leave its memory to the system. In a process
/// that has set OpenSSL up before, this changes nothing, and the handler is behind the gate's.
void keepOpenSslUntilTheEnd() {
  using InitCrypto = int(std::uint64_t options, const void* settings);
  constexpr std::uint64_t noExitHandler = 0x00080000;  // OPENSSL_INIT_NO_ATEXIT
  if (auto* initCrypto = openSslFunction<InitCrypto>("OPENSSL_init_crypto")) {
    initCrypto(noExitHandler, nullptr);
  }
}

bool setUp() {
  keepOpenSslUntilTheEnd();
  const bool isUsable = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  ExitGate::arm();
  return isUsable;
}

/// OpenSSL releases what it keeps for a thread when the thread ends, out of reach of the gate.
/// This does it earlier, inside.
class ThreadState {
 public:
  ThreadState() = default;
  ~ThreadState() {
    if (ForkedChild::isHere()) return;  // The thread that looks the function up may be gone.
    const ExitGate::Pass pass;
    using ThreadStop = void();
    static auto* const threadStop = openSslFunction<ThreadStop>("OPENSSL_thread_stop");
    if (threadStop != nullptr) threadStop();
  }
  ThreadState(const ThreadState&) = delete;
  ThreadState& operator=(const ThreadState&) = delete;
};

}  // namespace

bool enterThread() {
  static const bool isUsable = setUp();
  static thread_local const ThreadState state;
  static_cast<void>(state);
  return isUsable;
}

}  // namespace pelorino::CurlLibrary
