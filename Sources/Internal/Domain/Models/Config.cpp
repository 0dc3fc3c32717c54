#include "Config.h"

#include "System.h"

namespace pelorino {

const Config& Config::defaulConfiguration() {
  static const Config& defaults = *[] {
    auto* config = new Config;
    config->serverTime = System::current().clock().milliseconds();
    return config;
  }();
  return defaults;
}

}  // namespace pelorino
