#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "AnyOperation.h"
#include "BackendProcess.h"
#include "Guarded.h"

namespace {

const pid_t testProcess = ::getpid();

}  // namespace

/// Asked by the leak checker, where there is one, at the end of a process. In a forked child the
/// threads are gone whose stacks hold what looks lost.
extern "C" int __lsan_is_turned_off() {
  return ::getpid() == testProcess ? 0 : 1;
}

namespace pelorino {
namespace {

constexpr int wantedCode = 7;
constexpr int hasThreads = 8;

/// The code, or the number of the signal that ended it negated.
int codeOf(pid_t child) {
  int status = 0;
  if (::waitpid(child, &status, 0) != child) return EXIT_FAILURE;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::ptrdiff_t threadsOfThisProcess() {
  const std::filesystem::directory_iterator tasks("/proc/self/task");
  return std::distance(begin(tasks), end(tasks));
}

/// What a child does that knows nothing of the library's limits. A thread would be the library's.
[[noreturn]] void runOn(int round) {
  ::alarm(20);
  for (const auto& operation : anyOperations()) operation();
  PLREngineWrapper::destroySDK();
  PLRAnalytics::initialize("key");
  PLRHost::willTerminate();
  if (threadsOfThisProcess() != 1) ::_exit(hasThreads);
  if (round % 3 == 0) ::execl("/bin/sh", "sh", "-c", "exit 7", nullptr);
  if (round % 3 == 1) std::exit(wantedCode);
  ::_exit(wantedCode);
}

class Fork : public AnyOperationTest {};

/// First of all tests: the library has not been used before.
TEST_F(Fork, BeforeTheLibraryHasStartedGivesAChildThatCanStartIt) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::alarm(20);
    PLRAnalytics::initialize("key");
    drain();
    ::_exit(std::filesystem::exists(file_.path()) ? wantedCode : EXIT_FAILURE);
  }
  EXPECT_EQ(codeOf(child), wantedCode);
}

TEST_F(Fork, AtAnyMomentGivesAChildThatIsLeftInPeace) {
  PLRAnalytics::initialize("key");
  static_cast<void>(
      anyOperations());  // A child could find it half made, by a thread that it has not.
  {
    const Callers callers(4);
    for (int round = 0; round < 30; ++round) {
      const pid_t child = ::fork();
      if (child == 0) runOn(round);
      EXPECT_EQ(codeOf(child), wantedCode) << "round " << round;
    }
  }
  end();
}

TEST_F(Fork, OnAThreadOfTheLibraryNeitherStoresNorGoesOn) {
  PLRAnalytics::setLogLevel(PLRLogLevel::debug);
  std::atomic<int> code = EXIT_FAILURE;
  PLREngineWrapper::setEngineLoggerMessageClosure([&](PLRLogLevel, const std::string& line) {
    if (line.find("name: forks") == std::string::npos) return;
    const pid_t child = ::fork();
    if (child == 0) return;  // Back into the library.
    code = codeOf(child);
  });
  PLRAnalytics::initialize("key");
  PLRAnalytics::customEvent("forks");
  PLRAnalytics::customEvent("after");
  drain();
  end();
  EXPECT_EQ(code, EXIT_SUCCESS);
  EXPECT_EQ(file_.run("SELECT count(*) FROM (SELECT eventJson AS j FROM events UNION ALL "
                      "SELECT packagesJson FROM reports) WHERE j LIKE '%after%'"),
            "1");
}

/// Forks, and says what became of the child: it goes back into the library, or calls it and runs
/// another program, one that can be ended with a signal.
class Forking {
 public:
  explicit Forking(bool runsAProgram) : runsAProgram_(runsAProgram) {}

  void operator()(const char* where) {
    const pid_t child = ::fork();
    if (child != 0) return codes_.update([&](auto& codes) { codes[where] = codeOf(child); });
    ::alarm(20);
    if (!runsAProgram_) return;
    PLRAnalytics::customEvent("refused");
    sigset_t held;
    pthread_sigmask(SIG_BLOCK, nullptr, &held);
    if (sigismember(&held, SIGTERM) != 0) ::_exit(EXIT_FAILURE);
    ::execl("/bin/sh", "sh", "-c", "exit 7", nullptr);
  }

  [[nodiscard]] std::map<std::string, int> codes() const { return codes_.get(); }

 private:
  const bool runsAProgram_;
  Guarded<std::map<std::string, int>> codes_;
};

class ForkingStore final : public PLRStore {
 public:
  explicit ForkingStore(Forking& forking) : forking_(forking) {}
  std::shared_ptr<SKProductsRequest> makeProductsRequest(const std::set<std::string>&,
                                                         ProductsHandler) override {
    forking_("make");
    return std::make_shared<Request>(forking_);
  }

 private:
  class Request final : public SKProductsRequest {
   public:
    explicit Request(Forking& forking) : forking_(forking) {}
    ~Request() override { forking_("end of a request"); }
    void start() override { forking_("start"); }
    void cancel() override { forking_("cancel"); }

   private:
    Forking& forking_;
  };

  Forking& forking_;
};

TEST_F(Fork, AnywhereInTheHostsOwnCodeEndsWithThatCodeAndMayRunAnotherProgramThere) {
  blackbox::BackendProcess backend{file_.support() + ".backend"};
  backend.answer("/analytics/config", {{"timeForRequest", 1000},
                                       {"countForRequest", 3},
                                       {"eventParamsCount", 20},
                                       {"sessionTimeout", 1000},
                                       {"serverTime", 1},
                                       {"aliveTimeout", 1000},
                                       {"userCounting", true},
                                       {"sbsBundles", {"product"}},
                                       {"sbsConfigVersion", 1}});
  for (const bool runsAProgram : {false, true}) {
    Forking forking(runsAProgram);
    PLRHostDescription host;
    host.supportDirectory = file_.support();
    host.integrityProbe = [&] {
      forking("probe");
      return false;
    };
    PLRHost::describe(host);
    PLRHost::setStore(std::make_shared<ForkingStore>(forking));
    PLRAnalytics::setTestProxyUrl(backend.url());
    PLRAnalytics::initialize("key");
    PLRAnalytics::getSDKVersion([&](const std::string&) { forking("handler"); });
    const auto last = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!forking.codes().contains("start") && std::chrono::steady_clock::now() < last) drain();
    end();
    PLRHost::setStore(nullptr);
    PLRHost::describe({});
    std::map<std::string, int> wanted;
    for (const char* where : {"probe", "handler", "make", "start", "cancel", "end of a request"}) {
      wanted[where] = runsAProgram ? wantedCode : EXIT_SUCCESS;
    }
    EXPECT_EQ(forking.codes(), wanted);
  }
}

TEST_F(Fork, WhileAnotherThreadLogsGivesAChildThatWaitsForNothing) {
  static std::mutex hosts;
  static std::atomic<bool> isInside{false};
  static std::atomic<bool> isOver{false};
  PLREngineWrapper::setEngineLoggerMessageClosure([](PLRLogLevel, const std::string&) {
    const std::lock_guard lock(hosts);
    isInside = true;
    while (!isOver) std::this_thread::yield();
  });
  PLRAnalytics::initialize("key");
  PLRAnalytics::customEvent("");  // Refused, with an error line.
  while (!isInside) std::this_thread::yield();
  const pid_t child = ::fork();
  if (child == 0) runOn(2);
  EXPECT_EQ(codeOf(child), wantedCode);
  isOver = true;
  end();
}

TEST_F(Fork, IsToldOfOnceEvenWhileTheStartWaitsForTheApplication) {
  static int lines = 0;
  PLREngineWrapper::setEngineLoggerMessageClosure([](PLRLogLevel, const std::string& line) {
    if (line == "ERROR The library does not work in a forked process; calls are refused") ++lines;
  });
  PLRHost::setApplicationState(PLRApplicationState::background);
  PLRAnalytics::initialize("key");
  const pid_t child = ::fork();
  if (child == 0) {
    for (int i = 0; i < 2; ++i) PLRAnalytics::customEvent("refused");
    ::_exit(lines == 1 ? wantedCode : EXIT_FAILURE);
  }
  EXPECT_EQ(codeOf(child), wantedCode);
  EXPECT_EQ(lines, 0);
  end();
}

}  // namespace
}  // namespace pelorino
