#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <random>

#include "LoopbackServer.h"
#include "SystemTestSupport.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// The child's code; -1 for a crash, 124 when it had to be ended after a time beyond patience.
int codeOfChild(const std::string& arguments) {
  const int status = std::system(("exec timeout 20 '" SYSTEM_CHILD "' " + arguments).c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(Exit, ComesAtAnyMomentWithoutACrashAHangOrALateCall) {
  const SilentServer silent;
  const LoopbackServer closing(std::vector<std::string>{});
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  for (const std::string& state : {std::string("calling 0"), "waiting " + silent.port(),
                                   "handshaking " + silent.port(), "handshaking " + closing.port()})
    for (const char* way : {"return", "'exit on a thread'", "'exit in a block'", "quick_exit"})
      // libcurl and OpenSSL are set up in the first one or two milliseconds.
      for (const int latest : {2000, 30000}) {
        std::string arguments = state + " " + way + " ";
        arguments += std::to_string(std::uniform_int_distribution(0, latest)(random));
        EXPECT_EQ(codeOfChild(arguments), 7) << arguments;
      }
}

TEST(Exit, LetsTheHostsThreadsGoOnAndWaitsOnlyShortlyForAClosureThatHangs) {
  EXPECT_EQ(codeOfChild("logging 0 return 20000"), 7);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(codeOfChild("hanging 0 return 20000"), 7);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool hasSanitizer = true;
#elif defined(__has_feature)
constexpr bool hasSanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool hasSanitizer = false;
#endif

TEST(Queue, KeepsItsBlocksWhileTheSystemGivesNoThread) {
  if (hasSanitizer) GTEST_SKIP() << "a sanitizer needs the address space that is taken away here";
  EXPECT_EQ(codeOfChild("'without threads' 0 return 0"), 7);
}

}  // namespace
}  // namespace pelorino
