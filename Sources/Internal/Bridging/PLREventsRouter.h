#pragma once

#include <pelorino/PLRExport.h>

/// What a messaging library beside this one needs of it. Any thread; nothing throws.
class PLR_EXPORT PLREventsRouter {
 public:
  PLREventsRouter() = delete;

  /// True from the moment an `initialize` was accepted.
  [[nodiscard]] static bool isAnalyticsInited() noexcept;
};
