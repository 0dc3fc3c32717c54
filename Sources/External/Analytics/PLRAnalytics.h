#pragma once

#include <pelorino/PLRAccrualType.h>
#include <pelorino/PLRAnalyticsConfiguration.h>
#include <pelorino/PLRCustomEventParameters.h>
#include <pelorino/PLRExport.h>
#include <pelorino/PLRIdentifiersListener.h>
#include <pelorino/PLRLogLevel.h>
#include <pelorino/PLRProgressionEventParameters.h>
#include <pelorino/PLRReferralProperty.h>
#include <pelorino/PLRSocialNetwork.h>
#include <pelorino/SKPaymentTransaction.h>
#include <pelorino/SKProduct.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The front of the library: starting it, and reporting what happens in the application.
///
/// Every operation returns at once, from any thread: it copies its arguments and hands the work to
/// a queue of the library. None has an error result and none throws, unless memory for a text that
/// it returns is lacking; what was repaired, refused or failed is told in the log
/// (PLREngineWrapper::setEngineLoggerMessageClosure). A call made before `initialize` is refused
/// with a log line. Texts are UTF-8; what is not is repaired.
///
/// Completion handlers run on a thread of the library and may call the library. None runs any more
/// when exit destroys what was made before `initialize`. Capture nothing created after `initialize`
/// that exit destroys.
///
/// A process that is forked off after `initialize` has no library: there every call is refused, the
/// first one with a log line (unless another thread was just writing one), completion handlers are
/// not called, and nothing is stored or sent. The parent goes on. A process that forks before it
/// has called anything but PLRHost::describe, and initializes then, has no such limit.
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
  /// Gives a known user of this application another identifier, in the middle of a session too.
  /// Whoever had it is removed, with all that was stored for that user but the marks of tutorial
  /// steps. Both have 1 to 64 characters, longer ones are cut; the device's identifier is refused.
  static void replace(std::string_view fromUserId, std::string_view toUserId) noexcept;
  /// The active user's level; 1 before the start.
  static void getCurrentLevel(std::function<void(std::int64_t)> completionHandler) noexcept;

  /// A level that the user did not reach by playing, 1 to 2147483646; anything else is refused.
  static void setCurrentLevel(std::int64_t currentLevel) noexcept;

  /// Replaces the listener; none clears it. A listener set after the start hears at once of an
  /// identifier that is already known.
  static void setIdentifiersListener(std::shared_ptr<PLRIdentifiersListener> listener) noexcept;
  /// @}

  /// @name Tracking
  ///
  /// Texts are cut to the stated number of characters as a user sees them, after control characters
  /// have been taken out. A required text that is empty then cancels the call, as a number outside
  /// its bounds does. In a dictionary of resources keys have at most 24 characters, and a bad entry
  /// costs only that entry.
  /// @{

  using Resources = std::map<std::string, std::int64_t>;

  /// The user has reached a level, 1 to 2147483646. If it is the next one, what the user spent,
  /// earned and bought since the last is reported with it.
  static void levelUp(std::int64_t level) noexcept;
  /// The same, with what the user has now.
  static void levelUp(std::int64_t level, const Resources& balances) noexcept;

  /// What the user has now; once for each user and run of the process. An empty balance cancels the
  /// call.
  static void currentBalance(const Resources& balance) noexcept;

  /// Something that the application defines itself. The name has 1 to 72 characters, longer ones
  /// are cut; an empty one cancels the call. A bad parameter costs only that parameter.
  static void customEvent(std::string_view eventName) noexcept;
  static void customEvent(std::string_view eventName,
                          const PLRCustomEventParameters& parameters) noexcept;

  /// A purchase with currency of the game: identifier of at most 32 characters, type of at most 96,
  /// amount and prices 1 to 2147483647. No price left cancels the call.
  static void virtualCurrencyPayment(std::string_view purchaseId, std::string_view purchaseType,
                                     std::int64_t purchaseAmount,
                                     const Resources& resources) noexcept;
  /// The same, paid with one currency.
  static void virtualCurrencyPayment(std::string_view purchaseId, std::string_view purchaseType,
                                     std::int64_t purchaseAmount, std::int64_t purchasePrice,
                                     std::string_view purchaseCurrency) noexcept;

  /// Currency that the user got, 1 to 2147483647, and where from, in at most 24 and 32 characters.
  /// Summed on the device and reported from time to time; a sum stays within 32 bits.
  static void currencyAccrual(std::string_view currencyName, std::int64_t currencyAmount,
                              std::string_view source, PLRAccrualType accrualType) noexcept;

  /// A stretch of play begins, in the place of one that has not been finished. Until it is finished
  /// events tell that it is under way. The name has at most 40 characters. Not stored.
  static void startProgressionEvent(std::string_view eventName) noexcept;
  static void startProgressionEvent(std::string_view eventName,
                                    const PLRStartProgressionEventParameters& parameters) noexcept;
  /// The stretch of play that has been started under this name has ended with success.
  static void finishProgressionEvent(std::string_view eventName) noexcept;
  static void finishProgressionEvent(
      std::string_view eventName, const PLRFinishProgressionEventParameters& parameters) noexcept;

  /// A purchase in a store, sent at once. Once for each order of this application. The order has at
  /// most 65 characters, the product 255, the currency code exactly 3; the price is finite.
  static void realCurrencyPayment(std::string_view orderId, double price,
                                  std::string_view productId,
                                  std::string_view currencyCode) noexcept;

  /// Whether the library wants what the user has bought before; subscriptionHistory() is then to
  /// be called, once. False before the start.
  static void isRestoreTransactionHistoryRequired(
      std::function<void(bool)> completionHandler) noexcept;

  /// What the user has bought before, restored from the store. Purchases without an original do not
  /// count. One call that was asked for is taken, also an empty one; it is reported once the store
  /// has told the products.
  static void subscriptionHistory(const std::vector<SKPaymentTransaction>& transactions) noexcept;

  /// A subscription was paid, sent at once. Once for each original purchase of this application;
  /// renewals only report a product that is new.
  static void subscriptionPayment(const SKPaymentTransaction& transaction,
                                  const SKProduct& product) noexcept;

  /// The user has connected an account, or posted for a reason of at most 32 characters.
  static void socialNetworkConnect(const PLRSocialNetwork& socialNetwork) noexcept;
  static void socialNetworkPost(const PLRSocialNetwork& socialNetwork,
                                std::string_view reason) noexcept;

  /// A tutorial step, -2 to 2147483647, once for each user.
  static void tutorial(std::int64_t step) noexcept;

  /// Where the user came from, sent at once. Once for each application key, also when none of the
  /// properties is one that is reported. Values have at most 255 characters; an empty one is left
  /// out, and with none left the call is cancelled.
  static void referrer(const std::map<PLRReferralProperty, std::string>& utmData) noexcept;

  /// An advertisement was shown: texts of at most 100 characters, revenue of 0 and more.
  static void adImpression(std::string_view network, double revenue,
                           std::optional<std::string_view> placement,
                           std::optional<std::string_view> unit) noexcept;

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
