#include <pelorino/PLREventsRouter.h>

#include <exception>

#include "Core.h"

bool PLREventsRouter::isAnalyticsInited() noexcept {
  try {
    return pelorino::Core::shared()->isInitialized();
  } catch (const std::exception&) {  // No memory for a core: then there is none.
    return false;
  }
}
