#pragma once

#include <pelorino/PLRLogLevel.h>

#include <memory>
#include <string>
#include <vector>

#include "Guarded.h"
#include "Logger.h"

namespace pelorino {

/// The lines that the library writes while this lives, in their order. Any thread may write.
class LogCapture {
 public:
  explicit LogCapture(PLRLogLevel level = PLRLogLevel::debug) : before_(Logger::logLevel()) {
    Logger::setLogLevel(level);
    Logger::setEngineLoggerMessageClosure([lines = lines_](PLRLogLevel, const std::string& line) {
      lines->update([&](std::vector<std::string>& all) { all.push_back(line); });
    });
  }
  ~LogCapture() {
    Logger::setEngineLoggerMessageClosure({});
    Logger::setLogLevel(before_);
  }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  [[nodiscard]] std::vector<std::string> lines() const { return lines_->get(); }

 private:
  using Lines = Guarded<std::vector<std::string>>;
  std::shared_ptr<Lines> lines_ = std::make_shared<Lines>();
  PLRLogLevel before_;
};

}  // namespace pelorino
