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

/// A category of notifications: the buttons that a push can show.
struct PLRMessagingCategory {
  std::string id;
  std::vector<PLRMessagingButton> buttons;

  /// The same as a JSON object: {"id":"c","buttons":[{"id":"b","text":"Ok","activationMode":null}]}
  std::string json = "{}";
};

/// For a messaging library that runs beside this one. This library does not register for pushes and
/// does not show them.
///
/// Call it from any thread; nothing blocks or throws. Before the library is started, calls are
/// refused with a log line.
class PLR_EXPORT PLREventsRouter {
 public:
  using CategoriesHandler =
      std::function<void(const std::vector<PLRMessagingCategory>& categories)>;

  PLREventsRouter() = delete;

  /// Asks the backend for changes and answers with all categories, or with the stored ones if the
  /// backend cannot be asked. The handler runs on a queue of the library and blocks it meanwhile.
  /// It is not called when the library is not started.
  static void getMessagingCategories(CategoriesHandler with) noexcept;

  /// Reports the token with which pushes reach this device, and whether the user allows them. Sent
  /// at once.
  static void sendPushToken(std::string_view with, bool andFlag) noexcept;

  /// Reports that a push was opened, and with which button. Sent at once.
  /// with:       Time of the opening, in milliseconds since 1970.
  /// withID:     Identifier of the push.
  /// withButton: Absent when no button was used.
  static void sendPushOpened(std::int64_t with, std::int64_t withID,
                             std::optional<std::string_view> withButton = std::nullopt) noexcept;

  /// Writes a line to this library's log. `with` is the level: 1 error, 2 warning, 3 info, any
  /// other number debug.
  static void sendLogMessage(std::int64_t with, std::string_view withMessage) noexcept;

  /// True from an accepted `initialize` until PLREngineWrapper::destroySDK() has taken effect. The
  /// start itself may not have run yet.
  [[nodiscard]] static bool isAnalyticsInited() noexcept;
};
