#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRLogLevel.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// What game-engine plug-ins need beside PLRAnalytics. Any thread; nothing throws.
class PLR_EXPORT PLREngineWrapper {
 public:
  /// Receives each log line that passes PLRAnalytics::logLevel(): its level, and the level's name,
  /// a blank and the message. It is the only outlet of log lines. It runs on the thread that writes
  /// the line, most often one of the library's, and must be quick. When another one has been set,
  /// not from within one, it has ended on all threads, and what it refers to may go; one that takes
  /// longer than 200 ms is not waited for.
  [[nodiscard]] static std::function<void(PLRLogLevel, const std::string&)>
  engineLoggerMessageClosure();
  static void setEngineLoggerMessageClosure(
      std::function<void(PLRLogLevel, const std::string&)> closure) noexcept;

  /// Tears the library down behind everything reported so far, and returns at once. Stored data
  /// stays; `initialize` starts anew.
  static void destroySDK() noexcept;

  /// Replaces the version that the library reports of itself, unchecked.
  static void setSDKVersion(std::string_view version) noexcept;

  /// Leaves the application's version out of all reports until destroySDK().
  static void enableEditorMode() noexcept;

  /// Same as PLRAnalytics::sdkFolderPath().
  [[nodiscard]] static std::string unitySdkFolderPath();

  /// Logs the text and its Base64 at `debug`, to see what arrives across a language bridge.
  static void testString(std::string_view value) noexcept;

  /// PLRAnalytics::subscriptionHistory() with the identifiers of original purchases by product.
  static void engineSubscriptionHistory(
      const std::map<std::string, std::vector<std::string>>& transactions) noexcept;

  /// PLRAnalytics::subscriptionPayment() with two identifiers of at most 255 characters, that of
  /// the original purchase the second; longer ones are cut, an empty one cancels the call. Region
  /// and currency are those that the store has told.
  static void engineSubscriprtionPayment(std::string_view productId,
                                         std::string_view transactionId) noexcept;
};
