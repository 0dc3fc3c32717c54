#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "Logger.h"
#include "QueueManager.h"

namespace pelorino {
namespace {

TEST(Logger, BuildsAndDeliversTheLinesThatPass) {
  struct Case {
    PLRLogLevel set;
    std::vector<std::string> delivered;
  };
  const Case cases[] = {
      {PLRLogLevel::unknown, {}},
      {PLRLogLevel::no, {}},
      {PLRLogLevel::error, {"ERROR x"}},
      {PLRLogLevel::warning, {"ERROR x", "WARNING x"}},
      {PLRLogLevel::info, {"ERROR x", "WARNING x", "INFO x"}},
      {PLRLogLevel::debug, {"ERROR x", "WARNING x", "INFO x", "DEBUG x"}},
  };
  for (const Case& c : cases) {
    const LogCapture log(c.set);
    std::size_t built = 0;
    for (const PLRLogLevel level :
         {PLRLogLevel::error, PLRLogLevel::warning, PLRLogLevel::info, PLRLogLevel::debug}) {
      Logger::writeLog(level, [&] {
        ++built;
        return std::string("x");
      });
    }
    EXPECT_EQ(log.lines(), c.delivered) << description(c.set);
    EXPECT_EQ(built, c.delivered.size()) << description(c.set);
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

TEST(QueueManager, LogsWhatABlockThrowsAndGoesOn) {
  const LogCapture log;
  bool wentOn = false;
  QueueManager& queue = QueueManager::networkSerialQueue();
  queue.addOperation([] { throw std::runtime_error("no memory"); });
  queue.addOperation([&] { wentOn = true; });
  queue.waitUntilAllOperationsAreFinished();
  EXPECT_TRUE(wentOn);
  EXPECT_EQ(
      log.lines(),
      std::vector<std::string>{
          "ERROR [Queue] A block on com.pelorino.networkQueue ended with an error: no memory"});
}

}  // namespace
}  // namespace pelorino
