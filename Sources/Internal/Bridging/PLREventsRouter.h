#pragma once

#include <pelorino/PLRExport.h>

/// For a messaging library that runs beside this one. Any thread; nothing throws.
class PLR_EXPORT PLREventsRouter {
 public:
  PLREventsRouter() = delete;

  /// True from an accepted `initialize` until PLREngineWrapper::destroySDK() has taken effect. The
  /// start itself may not have run yet.
  [[nodiscard]] static bool isAnalyticsInited() noexcept;
};
