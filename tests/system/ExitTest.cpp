#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <random>

#include "LoopbackServer.h"
#include "SystemTestSupport.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// How the process ended: "7" for that code, "signal 11", or "hangs".
std::string runChild(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), SYSTEM_CHILD);
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  if (::posix_spawn(&child, SYSTEM_CHILD, nullptr, nullptr, pointers.data(), environ) != 0) {
    return "does not start";
  }
  int status = 0;
  if (!comesTrue([&] { return ::waitpid(child, &status, WNOHANG) == child; })) {
    ::kill(child, SIGKILL);
    ::waitpid(child, &status, 0);
    return "hangs";
  }
  if (WIFSIGNALED(status)) return "signal " + std::to_string(WTERMSIG(status));
  return std::to_string(WEXITSTATUS(status));
}

TEST(Exit, ComesAtAnyMomentWithoutACrashAHangOrALateCall) {
  const SilentServer silent;
  LoopbackServer closing(std::vector<std::string>{});
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  // libcurl and OpenSSL are set up in the first one or two milliseconds.
  const int latest[] = {2000, 30000};
  const struct {
    const char* state;
    std::string port;
  } states[] = {{"calling", "0"},
                {"waiting", silent.port()},
                {"handshaking", silent.port()},
                {"handshaking", closing.port()}};
  for (const auto& [state, port] : states) {
    for (const char* way : {"return", "exit on a thread", "exit in a block", "quick_exit"}) {
      for (const int limit : latest) {
        std::uniform_int_distribution<int> microseconds(0, limit);
        const std::string delay = std::to_string(microseconds(random));
        SCOPED_TRACE(std::string(state) + ", " + way + ", after us " + delay);
        EXPECT_EQ(runChild({state, way, delay, port}), "7");
      }
    }
  }
}

TEST(Exit, LetsTheHostsOwnThreadsGoOn) {
  EXPECT_EQ(runChild({"logging", "return", "20000", "0"}), "7");
}

TEST(Exit, WaitsOnlyShortlyForAClosureThatHangs) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(runChild({"hanging", "return", "20000", "0"}), "7");
  EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

TEST(Queue, KeepsItsBlocksWhileTheSystemGivesNoThread) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer needs the address space that the test takes away";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
  GTEST_SKIP() << "a sanitizer needs the address space that the test takes away";
#endif
#endif
  EXPECT_EQ(runChild({"without threads", "return", "0", "0"}), "7");
}

}  // namespace
}  // namespace pelorino
