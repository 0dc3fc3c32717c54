#include <pelorino/PLREventsRouter.h>

#include "Core.h"
#include "PublicCall.h"

using namespace pelorino;

bool PLREventsRouter::isAnalyticsInited() noexcept {
  return publicCall("isAnalyticsInited", false, [] { return Core::shared()->isInitialized(); });
}
