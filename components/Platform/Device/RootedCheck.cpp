#include "RootedCheck.h"

#include <string>
#include <utility>

#include "Logger.h"

namespace pelorino {
namespace {

void logFailure(const char* what) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return std::string("The integrity probe ended with an error: ") +
           (what == nullptr ? "unknown" : what);
  });
}

bool answer(const std::function<RootedCheck::Probe()>& source) {
  bool isRooted = false;
  runHostCode<HostEntry::unawaited>(
      [&] {
        const RootedCheck::Probe probe = source();
        isRooted = probe && probe.handle()();
      },
      logFailure);
  return isRooted;
}

}  // namespace

RootedCheck::RootedCheck(std::function<Probe()> probe, SerialQueue& mainQueue, bool isSimulator)
    : probe_(std::move(probe)), mainQueue_(mainQueue), isSimulator_(isSimulator) {}

void RootedCheck::isRooted(CompletionHandler completionHandler) {
  if (isSimulator_) {
    completionHandler(false);
    return;
  }
  mainQueue_.add(
      [probe = probe_, handler = std::move(completionHandler)] { handler(answer(probe)); });
}

}  // namespace pelorino
