#include "ModuleFront.h"

#include <fmt/format.h>

#include "Logger.h"

namespace pelorino {

bool validateInitialization(std::string_view label, bool isInitialized) {
  if (isInitialized) return true;
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("In the {} method an error has occurred: The SDK is not initialized yet!",
                       label);
  });
  return false;
}

}  // namespace pelorino
