// A process that ends in the way, and in the state, that its arguments name: see ExitTest.cpp.
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

#include "ExitGate.h"
#include "HostCode.h"
#include "Logger.h"
#include "System.h"

namespace {

using namespace pelorino;
using namespace std::chrono_literals;

constexpr int wantedCode = 7;
constexpr int usedTooLate = 8;
constexpr int blocksLost = 9;

/// State of a host, torn down at exit. What the library calls must not find it gone.
struct HostState {
  std::atomic<bool> isAlive{true};
  std::atomic<bool> isToEnd{false};
  std::atomic<int> rounds{0};
  std::thread thread;  // Of the host's own: goes on at exit until it is told to end.

  ~HostState() {
    if (thread.joinable()) {
      const int before = rounds;
      while (rounds < before + 2) std::this_thread::sleep_for(1ms);
      isToEnd = true;
      thread.join();
    }
    isAlive = false;
    // A host may call the library from here: it must not wait for what will never run.
    SerialQueue& queue = System::current().executor().mainQueue();
    queue.add([] {});
    queue.waitUntilAllBlocksAreFinished();
    const ExitGate::Pass pass;
    // Gives a thread that should have been kept out the time to come in.
    std::this_thread::sleep_for(5ms);
  }
};

HostState hostState;

SerialQueue& makeQueue() {
  return *System::current().executor().makeQueue("com.pelorino.child").release();
}

void useHost() {
  if (!hostState.isAlive) ::_exit(usedTooLate);
}

void callHost() {
  runHostCode(useHost, [](const char*) {});
}

/// What a host may have put into a closure.
struct UsesHostAtItsEnd {
  ~UsesHostAtItsEnd() { useHost(); }
};

/// Adds a block that runs `work` over and over, and ends with something of the host's.
void repeatOn(SerialQueue& queue, const std::function<void()>& work) {
  const HostHeld<std::shared_ptr<UsesHostAtItsEnd>> held(std::make_shared<UsesHostAtItsEnd>());
  queue.add([&queue, work, held] {
    work();
    repeatOn(queue, work);
  });
}

void startWork(const std::string& state, const std::string& port) {
  ExitGate::arm();
  const std::string url =
      (state == "handshaking" ? "https" : "http") + std::string("://127.0.0.1:") + port;
  for (int i = 0; i < 3; ++i) {
    repeatOn(makeQueue(), [=] {
      if (state != "calling")
        static_cast<void>(System::current().http().perform(
            {"POST", url, {}, std::make_shared<std::string>("{}")}));
      callHost();
    });
  }
}

/// Writes log lines on a thread of the host.
void log() {
  Logger::setEngineLoggerMessageClosure([](PLRLogLevel, const std::string&) {
    if (!hostState.isAlive) ::_exit(usedTooLate);
  });
  hostState.thread = std::thread([] {
    for (; !hostState.isToEnd; ++hostState.rounds) Logger::writeLog(PLRLogLevel::error, "a line");
  });
}

/// Stays inside the gate, as a closure of the host does that hangs.
void hang() {
  for (int i = 0; i < 100; ++i) ExitGate::arm();
  System::current().executor().mainQueue().add([] {
    const ExitGate::Pass pass;
    std::this_thread::sleep_for(1h);
  });
}

int end(const std::string& way) {
  if (way == "quick_exit") std::quick_exit(wantedCode);
  if (way == "exit on a thread") {
    std::thread([] { std::exit(wantedCode); }).detach();
  } else if (way == "exit in a block") {
    makeQueue().add([] {
      const ExitGate::Pass pass;
      std::exit(wantedCode);
    });
  } else {
    return wantedCode;
  }
  std::this_thread::sleep_for(1h);
  return EXIT_FAILURE;
}

/// Takes away the address space that a thread's stack needs, and gives it back.
int runWithoutThreads() {
  rlimit former{};
  ::getrlimit(RLIMIT_AS, &former);
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  rlimit tight = former;
  tight.rlim_cur = (pages + 256) * static_cast<std::size_t>(::getpagesize());
  ::setrlimit(RLIMIT_AS, &tight);
  SerialQueue& queue = makeQueue();
  std::string ran;
  queue.add([&] { ran += 'a'; });
  queue.waitUntilAllBlocksAreFinished();  // Returns: there is no thread to wait for.
  const bool hadThread = !ran.empty();
  ::setrlimit(RLIMIT_AS, &former);
  queue.add([&] { ran += 'b'; });
  queue.waitUntilAllBlocksAreFinished();
  return ran == "ab" && !hadThread ? wantedCode : blocksLost;
}

}  // namespace

// ThreadSanitizer would wait a second at each exit. Not called without it.
extern "C" const char* __tsan_default_options();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __tsan_default_options() {
  return "atexit_sleep_ms=0";
}

int main(int count, char** arguments) {
  if (count != 5) return EXIT_FAILURE;
  const std::string state = arguments[1];
  if (state == "without threads") return runWithoutThreads();
  if (state == "hanging") {
    hang();
  } else if (state == "logging") {
    log();
  } else {
    startWork(state, arguments[2]);
  }
  std::this_thread::sleep_for(std::chrono::microseconds(std::stoi(arguments[4])));
  return end(arguments[3]);
}
