#include <pelorino/PLREventsRouter.h>

#include <exception>

#include "Core.h"
#include "ForkedChild.h"

bool PLREventsRouter::isAnalyticsInited() noexcept {
  if (pelorino::ForkedChild::isHere()) return false;
  try {
    return pelorino::Core::shared()->isInitialized();
  } catch (const std::exception&) {  // No memory for a core: then there is none.
    return false;
  }
}
