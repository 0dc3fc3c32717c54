#include <pelorino/PLREventsRouter.h>

#include "Core.h"

bool PLREventsRouter::isAnalyticsInited() noexcept {
  return pelorino::Core::shared()->isInitialized();
}
