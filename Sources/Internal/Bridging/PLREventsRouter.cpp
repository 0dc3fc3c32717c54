#include <pelorino/PLREventsRouter.h>

#include "Core.h"
#include "Entry.h"

using namespace pelorino;

bool PLREventsRouter::isAnalyticsInited() noexcept {
  return enter("isAnalyticsInited", false, [] { return Core::shared()->isInitialized(); });
}
