#pragma once

#include <pelorino/PLRExport.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A button of a notification.
struct PLRMessagingButton {
  std::string id;
  std::string text;
  std::optional<std::string> activationMode;  ///< As the backend names it.
};

/// A category of notifications: the buttons that a push may show.
struct PLRMessagingCategory {
  std::string id;
  std::vector<PLRMessagingButton> buttons;

  /// The same as a JSON object: {"id":"c","buttons":[{"id":"b","text":"Ok","activationMode":null}]}
  std::string json = "{}";
};

/// What a messaging library beside this one needs of it. This library neither registers for pushes
/// nor shows any.
///
/// Threads: any, also before the start of the library, where calls are refused with a log line.
/// Nothing blocks, nothing throws.
class PLR_EXPORT PLREventsRouter {
 public:
  using CategoriesHandler =
      std::function<void(const std::vector<PLRMessagingCategory>& categories)>;

  PLREventsRouter() = delete;

  /// Asks the backend for changes and gives all categories as they are then; those that are stored
  /// where the backend cannot be asked. The handler runs on a queue of the library, which it holds
  /// up while it runs, and is not called when the library has not been started.
  static void getMessagingCategories(CategoriesHandler with) noexcept;

  /// Reports the token under which pushes reach this device, and whether its user allows them. Sent
  /// at once.
  static void sendPushToken(std::string_view with, bool andFlag) noexcept;

  /// Reports that a push was opened, and with which button. Sent at once.
  /// with:       Time of the opening, milliseconds since 1970.
  /// withID:     The push.
  /// withButton: Absent when it was opened as such.
  static void sendPushOpened(std::int64_t with, std::int64_t withID,
                             std::optional<std::string_view> withButton = std::nullopt) noexcept;

  /// Writes a line to this library's log. `with` is the level: 1 error, 2 warning, 3 info, any
  /// other number debug.
  static void sendLogMessage(std::int64_t with, std::string_view withMessage) noexcept;

  /// True from an accepted `initialize` until PLREngineWrapper::destroySDK() has taken effect. The
  /// start itself may not have run yet.
  [[nodiscard]] static bool isAnalyticsInited() noexcept;
};
