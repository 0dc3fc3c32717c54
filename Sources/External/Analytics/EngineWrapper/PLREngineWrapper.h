#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRLogLevel.h>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

/// Further operations for plug-ins of game engines. Any thread. Nothing throws, except that
/// returning a closure or a text may fail for lack of memory.
class PLR_EXPORT PLREngineWrapper {
 public:
  /// The closure that receives each log line whose level passes PLRAnalytics::logLevel(). Its
  /// arguments are the level, and a text of the level's name, a blank and the message. It is the
  /// only way to see log lines; there is none at first.
  ///
  /// It runs on the thread that writes the line, most often a thread of the library. It must be
  /// quick. An exception from it is dropped.
  ///
  /// The setter replaces the closure and waits until the old one has ended on all other threads,
  /// for 200 ms at most. After that, what the old closure refers to may be destroyed. The setter
  /// does not wait when a closure calls it.
  [[nodiscard]] static std::function<void(PLRLogLevel, const std::string&)>
  engineLoggerMessageClosure();
  static void setEngineLoggerMessageClosure(
      std::function<void(PLRLogLevel, const std::string&)> closure) noexcept;

  /// Ends the library after all calls made so far have been processed. Returns at once. Stored data
  /// stays, and `initialize` can start the library again.
  static void destroySDK() noexcept;

  /// Replaces the version that the library reports of itself. The text is not checked.
  static void setSDKVersion(std::string_view version) noexcept;

  /// From now on reports and the request for the configuration do not contain the application's
  /// version, until destroySDK().
  static void enableEditorMode() noexcept;

  /// Same as PLRAnalytics::sdkFolderPath().
  [[nodiscard]] static std::string unitySdkFolderPath();

  /// Logs the text and its Base64 at `debug`. It shows what arrives across a language bridge.
  static void testString(std::string_view value) noexcept;

  /// Like PLRAnalytics::subscriptionHistory(). Maps each product to the identifiers of its original
  /// purchases.
  static void engineSubscriptionHistory(
      const std::map<std::string, std::vector<std::string>>& transactions) noexcept;

  /// Like PLRAnalytics::subscriptionPayment(), once for each original purchase. `transactionId`
  /// identifies the original purchase. Both texts have 1 to 255 characters: longer ones are cut, an
  /// empty one cancels the call. Region and currency come from the store's answer about the
  /// product; they are empty when the library knows no such product.
  static void engineSubscriprtionPayment(std::string_view productId,
                                         std::string_view transactionId) noexcept;
};
