#pragma once

#include <pelorino/PLRAnalyticsConfiguration.h>
#include <pelorino/PLRCustomEventParameters.h>
#include <pelorino/PLRExport.h>
#include <pelorino/PLRIdentifiersListener.h>
#include <pelorino/PLRLogLevel.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

/// The front of the library: starting it, and reporting what happens in the application.
///
/// Every operation returns at once, from any thread: it copies its arguments and hands the work to
/// a queue of the library. None throws and none has an error result; what was repaired, refused or
/// failed is told in the log (PLREngineWrapper::setEngineLoggerMessageClosure). A call made before
/// `initialize` is refused with a log line. Texts are UTF-8; what is not is repaired.
///
/// Completion handlers run on a thread of the library and may call the library.
class PLR_EXPORT PLRAnalytics {
 public:
  PLRAnalytics() = delete;

  /// @name Start and identity
  /// @{

  /// Starts the library for an application key of at most 255 characters. Once per process, until
  /// PLREngineWrapper::destroySDK(). In the background the start waits until the application
  /// becomes active.
  static void initialize(std::string_view applicationKey) noexcept;
  static void initialize(std::string_view applicationKey,
                         const PLRAnalyticsConfiguration& configuration) noexcept;

  /// The most detailed level that is logged; `error` at first.
  [[nodiscard]] static PLRLogLevel logLevel() noexcept;
  static void setLogLevel(PLRLogLevel level) noexcept;

  /// Held and given back; no line is written to it. Log lines go to the closure of
  /// PLREngineWrapper.
  [[nodiscard]] static std::function<void(const std::string&)> loggerMessageClosure();
  static void setLoggerMessageClosure(std::function<void(const std::string&)> closure) noexcept;

  /// The identifier of this device; empty before the start.
  static void getDeviceId(std::function<void(const std::string&)> completionHandler) noexcept;
  /// Empty before the start.
  static void getSDKVersion(std::function<void(const std::string&)> completionHandler) noexcept;
  /// False before the start.
  static void getTrackingAvailability(std::function<void(bool)> completionHandler) noexcept;
  /// Switches tracking for every application key on the device, for good. Off drops what has not
  /// been sent, tells the backend and stores nothing from then on.
  static void setTrackingAvailability(bool value) noexcept;
  /// The active user's identifier; empty before the start.
  static void getUserId(std::function<void(const std::string&)> completionHandler) noexcept;
  /// Who is playing, in at most 64 characters, longer ones are cut; the empty text means the
  /// default user, who stands for the device. The device's identifier is refused.
  static void setUserId(std::string_view userId) noexcept;
  /// The active user's level; 1 before the start.
  static void getCurrentLevel(std::function<void(std::int64_t)> completionHandler) noexcept;

  /// A level that the user did not reach by playing, 1 to 2147483646; anything else is refused.
  static void setCurrentLevel(std::int64_t currentLevel) noexcept;

  /// Replaces the listener; none clears it. A listener set after the start hears at once of an
  /// identifier that is already known.
  static void setIdentifiersListener(std::shared_ptr<PLRIdentifiersListener> listener) noexcept;
  /// @}

  /// @name Tracking
  /// @{

  /// Something that the application defines itself. The name has 1 to 72 characters, longer ones
  /// are cut; an empty one cancels the call. A bad parameter costs only that parameter.
  static void customEvent(std::string_view eventName) noexcept;
  static void customEvent(std::string_view eventName,
                          const PLRCustomEventParameters& parameters) noexcept;

  /// Sends what is stored now instead of at the next occasion.
  static void sendBufferedEvents() noexcept;
  /// @}

  /// @name Test and support, on the caller's thread
  /// @{

  /// Writes one log line at each level.
  static void testLogs() noexcept;

  /// The backend's origin, such as "http://127.0.0.1:8080", in place of the built-in one; the empty
  /// text goes back to that.
  static void setTestProxyUrl(std::string_view url) noexcept;
  static void getTestProxyUrl(const std::function<void(const std::string&)>& urlHandler) noexcept;

  /// Appended to the backend's origin.
  static void setTestCustomUrl(std::string_view url) noexcept;
  static void getTestCustomUrl(const std::function<void(const std::string&)>& urlHandler) noexcept;

  /// The folder of the library's data; "fileMessagerError" where there is none.
  [[nodiscard]] static std::string sdkFolderPath();

  /// Removes the device identifiers that outlive the application's data.
  static void clearKeychain() noexcept;
  /// @}
};
