#include "HostClosure.h"

#include <string>

#include "Logger.h"

namespace pelorino {

void logFailedHandler(const char* what) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    std::string line = "A completion handler of the host ended with an error";
    return what == nullptr ? line : line + ": " + what;
  });
}

}  // namespace pelorino
