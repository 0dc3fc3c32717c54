#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "LogCapture.h"
#include "Logger.h"
#include "QueueManager.h"

namespace pelorino {
namespace {

TEST(Logger, BuildsAndDeliversTheLinesThatPass) {
  using enum PLRLogLevel;
  const std::vector<std::string> all = {"ERROR x", "WARNING x", "INFO x", "DEBUG x"};
  const std::pair<PLRLogLevel, std::ptrdiff_t> cases[] = {{unknown, 0}, {no, 0},   {error, 1},
                                                          {warning, 2}, {info, 3}, {debug, 4}};
  for (const auto& [set, count] : cases) {
    const LogCapture log(set);
    std::ptrdiff_t built = 0;
    const auto build = [&] {
      ++built;
      return std::string("x");
    };
    for (const PLRLogLevel level : {error, warning, info, debug}) Logger::writeLog(level, build);
    EXPECT_EQ(log.lines(), std::vector(all.begin(), all.begin() + count)) << description(set);
    EXPECT_EQ(built, count) << description(set);
  }
}

TEST(Logger, OutlivesAClosureThatThrowsOrLogsItself) {
  int calls = 0;
  Logger::setEngineLoggerMessageClosure([&](PLRLogLevel, const std::string& line) {
    ++calls;
    if (line == "ERROR outer") {
      Logger::writeLog(PLRLogLevel::error, "inner");
      throw std::runtime_error("the host's own");
    }
  });
  Logger::writeLog(PLRLogLevel::error, "outer");
  Logger::setEngineLoggerMessageClosure({});
  Logger::writeLog(PLRLogLevel::error, "unheard");
  EXPECT_EQ(calls, 2);
}

TEST(Logger, HasDoneWithAClosureWhenItIsReplaced) {
  std::atomic<bool> isInside = false;
  Logger::setEngineLoggerMessageClosure([&](PLRLogLevel, const std::string&) {
    isInside = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    isInside = false;
  });
  const std::jthread writer([] { Logger::writeLog(PLRLogLevel::error, "a line"); });
  while (!isInside) std::this_thread::yield();
  Logger::setEngineLoggerMessageClosure({});
  EXPECT_FALSE(isInside);
}

TEST(QueueManager, LogsWhatABlockThrowsAndGoesOn) {
  const LogCapture log;
  QueueManager& queue = QueueManager::networkSerialQueue();
  queue.addOperation([] { throw std::runtime_error("no memory"); });
  queue.addOperation([] { throw 7; });
  queue.waitUntilAllOperationsAreFinished();
  const std::string line =
      "ERROR [Queue] A block on com.pelorino.networkQueue ended with an error: ";
  EXPECT_EQ(log.lines(), (std::vector{line + "no memory", line + "an exception of unknown type"}));
}

}  // namespace
}  // namespace pelorino
