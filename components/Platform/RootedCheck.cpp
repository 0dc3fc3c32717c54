#include "RootedCheck.h"

#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "ExitGate.h"
#include "ForkedChild.h"
#include "Logger.h"

namespace pelorino {
namespace {

void logFailure(std::string_view what) {
  Logger::writeLog(PLRLogLevel::error,
                   [&] { return "The integrity probe ended with an error: " + std::string(what); });
}

// No probe begins while the process exits. One that is running then is left behind: it may take
// long, so exit does not wait for it as it does for the host's other closures.
bool answer(const std::function<RootedCheck::Probe()>& source) {
  { const ExitGate::Pass pass; }
  try {
    const ForkedChild::HostCode hostCode;
    const RootedCheck::Probe probe = source();
    return probe && probe();
  } catch (const std::exception& error) {
    logFailure(error.what());
  } catch (...) {
    logFailure("unknown");
  }
  return false;
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
