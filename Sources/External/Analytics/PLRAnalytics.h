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

/// The main interface of the library: starts it and reports what happens in the application.
///
/// Call it from any thread. An operation copies its arguments, hands the work to a queue of the
/// library and returns at once. There are no error results: a log line tells what was repaired,
/// refused or failed (PLREngineWrapper::setEngineLoggerMessageClosure). Nothing throws, except that
/// returning a text may fail for lack of memory. A call before `initialize` is refused with a log
/// line. Texts are UTF-8; bad bytes are replaced.
///
/// Completion handlers run on a thread of the library and may call the library. An empty handler is
/// allowed. When the process exits, handlers stop before anything is destroyed that was created
/// before `initialize`. So a handler must not capture an object that was created after `initialize`
/// and that exit destroys.
///
/// A child process forked after `initialize` cannot use the library. There every call is refused,
/// the first one with a log line (unless another thread was writing one during the fork). No
/// completion handler is called, and nothing is stored or sent. The parent is not affected. A child
/// can start the library itself if the parent had called nothing but PLRHost::describe before the
/// fork.
class PLR_EXPORT PLRAnalytics {
 public:
  PLRAnalytics() = delete;

  /// @name Start and identity
  /// @{

  /// Starts the library for an application key of 1 to 255 characters: a longer key is cut, an
  /// empty one stops the start. A second call is refused until PLREngineWrapper::destroySDK(). If
  /// the application is in the background, the start waits until it becomes active.
  static void initialize(std::string_view applicationKey) noexcept;
  static void initialize(std::string_view applicationKey,
                         const PLRAnalyticsConfiguration& configuration) noexcept;

  /// The most detailed level that is logged; `error` at first. Takes effect at once.
  [[nodiscard]] static PLRLogLevel logLevel() noexcept;
  static void setLogLevel(PLRLogLevel level) noexcept;

  /// Keeps a closure and returns it, but never calls it. Log lines go to
  /// PLREngineWrapper::engineLoggerMessageClosure().
  [[nodiscard]] static std::function<void(const std::string&)> loggerMessageClosure();
  static void setLoggerMessageClosure(std::function<void(const std::string&)> closure) noexcept;

  /// Answers with the identifier of this device; empty before the start.
  static void getDeviceId(std::function<void(const std::string&)> completionHandler) noexcept;
  /// Answers with the library's version; empty before the start.
  static void getSDKVersion(std::function<void(const std::string&)> completionHandler) noexcept;
  /// Answers whether tracking is on; false before the start.
  static void getTrackingAvailability(std::function<void(bool)> completionHandler) noexcept;
  /// Switches tracking on or off for all application keys of this program. The setting is stored.
  /// Switching off deletes what has not been sent and reports the change to the backend. From then
  /// on nothing is stored, and nothing is sent but, at each start, that tracking is off.
  static void setTrackingAvailability(bool value) noexcept;
  /// Answers with the active user's identifier; empty before the start.
  static void getUserId(std::function<void(const std::string&)> completionHandler) noexcept;
  /// Makes this user the active one. The identifier has at most 64 characters; a longer one is cut.
  /// The empty text means the default user, who stands for the device. The device's own identifier
  /// is refused.
  static void setUserId(std::string_view userId) noexcept;
  /// Renames a known user of this application, also during a session. A user who already has the
  /// new identifier is removed with everything stored for that user, except the marks of tutorial
  /// steps. Both identifiers have 1 to 64 characters: longer ones are cut, an empty one cancels the
  /// call. The device's own identifier is refused as the new one.
  static void replace(std::string_view fromUserId, std::string_view toUserId) noexcept;
  /// Answers with the active user's level; 1 before the start.
  static void getCurrentLevel(std::function<void(std::int64_t)> completionHandler) noexcept;

  /// Sets a level that the user did not reach by playing. 1 to 2147483646; anything else is
  /// refused.
  static void setCurrentLevel(std::int64_t currentLevel) noexcept;

  /// Replaces the listener; null removes it. If the identifier is already known, a new listener is
  /// called with it soon after this call.
  static void setIdentifiersListener(std::shared_ptr<PLRIdentifiersListener> listener) noexcept;
  /// @}

  /// @name Tracking
  ///
  /// Control characters are removed from texts. Then texts are cut to the stated number of
  /// characters as a user sees them. A required text that is then empty cancels the call, and so
  /// does a number outside its limits. The keys of `Resources` have at most 24 characters; a bad
  /// entry is dropped and the others stay.
  /// @{

  /// Amounts by the name of the resource or currency.
  using Resources = std::map<std::string, std::int64_t>;

  /// The user has reached a level, 1 to 2147483646. If it is the next level, the event also reports
  /// what the user spent, earned and bought during the last one.
  static void levelUp(std::int64_t level) noexcept;
  /// The same, with the amounts that the user owns now. Any amount is allowed.
  static void levelUp(std::int64_t level, const Resources& balances) noexcept;

  /// The amounts that the user owns now. Any amount is allowed; an empty balance cancels the call.
  /// It is reported once: later calls are refused until another user becomes active or the library
  /// starts again.
  static void currentBalance(const Resources& balance) noexcept;

  /// An event that the application defines. The name has 1 to 72 characters. A bad parameter is
  /// dropped and the others stay.
  static void customEvent(std::string_view eventName) noexcept;
  static void customEvent(std::string_view eventName,
                          const PLRCustomEventParameters& parameters) noexcept;

  /// The user bought something with currency of the game. The identifier has 1 to 32 characters,
  /// the type 1 to 96. Amount and prices are 1 to 2147483647. `resources` maps currencies to
  /// prices; if no valid price is left, the call is cancelled.
  static void virtualCurrencyPayment(std::string_view purchaseId, std::string_view purchaseType,
                                     std::int64_t purchaseAmount,
                                     const Resources& resources) noexcept;
  /// The same for one currency.
  static void virtualCurrencyPayment(std::string_view purchaseId, std::string_view purchaseType,
                                     std::int64_t purchaseAmount, std::int64_t purchasePrice,
                                     std::string_view purchaseCurrency) noexcept;

  /// The user got an amount of currency, 1 to 2147483647. The currency's name has 1 to 24
  /// characters, the source 1 to 32. Amounts are added up on the device and reported from time to
  /// time. A sum above 2147483647 stays there, with a log line.
  static void currencyAccrual(std::string_view currencyName, std::int64_t currencyAmount,
                              std::string_view source, PLRAccrualType accrualType) noexcept;

  /// A progression, such as a stage or a quest, begins. It replaces one that has not been finished.
  /// Until it is finished, most events carry its name. The name has 1 to 40 characters. A running
  /// progression is kept in memory only and is lost when the process ends.
  static void startProgressionEvent(std::string_view eventName) noexcept;
  static void startProgressionEvent(std::string_view eventName,
                                    const PLRStartProgressionEventParameters& parameters) noexcept;
  /// The progression of this name has ended with success. If no progression, or one of another
  /// name, is running, the call is refused.
  static void finishProgressionEvent(std::string_view eventName) noexcept;
  /// The same; the parameters tell whether it was a success.
  static void finishProgressionEvent(
      std::string_view eventName, const PLRFinishProgressionEventParameters& parameters) noexcept;

  /// The user bought something with real money; sent at once. Each order is reported once. The
  /// order has 1 to 65 characters, the product 1 to 255, the currency code exactly 3. The price is
  /// any finite number.
  static void realCurrencyPayment(std::string_view orderId, double price,
                                  std::string_view productId,
                                  std::string_view currencyCode) noexcept;

  /// Answers whether the library needs the user's past purchases. If so, call subscriptionHistory()
  /// once. False before the start.
  static void isRestoreTransactionHistoryRequired(
      std::function<void(bool)> completionHandler) noexcept;

  /// The user's past purchases, restored from the store. Transactions without an original
  /// transaction are ignored. The library takes one call, an empty one too, and ignores further
  /// ones until it needs the history again. The history is sent when the store has described the
  /// products.
  static void subscriptionHistory(const std::vector<SKPaymentTransaction>& transactions) noexcept;

  /// The user paid for a subscription; sent at once. Each original purchase is reported once. A
  /// renewal only reports the product, if that is new. A transaction without any identifier is
  /// refused.
  static void subscriptionPayment(const SKPaymentTransaction& transaction,
                                  const SKProduct& product) noexcept;

  /// The user has connected an account of this network.
  static void socialNetworkConnect(const PLRSocialNetwork& socialNetwork) noexcept;
  /// The user has posted in this network. The reason has 1 to 32 characters.
  static void socialNetworkPost(const PLRSocialNetwork& socialNetwork,
                                std::string_view reason) noexcept;

  /// The user has reached a step of the tutorial, -2 to 2147483647. Each step is reported once for
  /// each user.
  static void tutorial(std::int64_t step) noexcept;

  /// Where the user came from; sent at once. The library takes one call for each application key,
  /// even if none of its properties is one of the shared ones, which alone are reported. Values
  /// have at most 255 characters. Empty values are dropped; if none is left, the call is cancelled.
  static void referrer(const std::map<PLRReferralProperty, std::string>& utmData) noexcept;

  /// An advertisement was shown. Texts have at most 100 characters, and `network` at least 1. The
  /// revenue is finite and not negative.
  static void adImpression(std::string_view network, double revenue,
                           std::optional<std::string_view> placement,
                           std::optional<std::string_view> unit) noexcept;

  /// Sends stored events and changes of the user's card now. Without this call the library sends
  /// them at its own times.
  static void sendBufferedEvents() noexcept;
  /// @}

  /// @name Test and support, on the caller's thread
  /// @{

  /// Writes one log line at each level.
  static void testLogs() noexcept;

  /// Replaces the backend's address, such as "http://127.0.0.1:8080", without a slash at the end.
  /// The empty text restores the built-in address. Not checked and not stored; it stays in force
  /// after PLREngineWrapper::destroySDK().
  static void setTestProxyUrl(std::string_view url) noexcept;
  static void getTestProxyUrl(const std::function<void(const std::string&)>& urlHandler) noexcept;

  /// A text that is appended to the backend's address; empty at first. Not checked and not stored.
  static void setTestCustomUrl(std::string_view url) noexcept;
  static void getTestCustomUrl(const std::function<void(const std::string&)>& urlHandler) noexcept;

  /// The path of the folder that holds the library's data, or "fileMessagerError" if there is none.
  [[nodiscard]] static std::string sdkFolderPath();

  /// Removes the device identifiers from the key store, which is kept outside the library's folder.
  static void clearKeychain() noexcept;
  /// @}
};
