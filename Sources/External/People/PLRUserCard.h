#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRGender.h>
#include <pelorino/PLRNumber.h>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

/// The card of the active user: named values that describe who is playing. Each user has a card of
/// his own, which is kept on the device; the backend is told the whole card at each start and what
/// has changed since at the usual occasions, at the latest with PLRAnalytics::sendBufferedEvents.
///
/// Every operation returns at once, from any thread: it copies its arguments and hands the work to
/// a queue of the library, which applies them in their order of arrival. None throws and none has
/// an error result; what was repaired, refused or failed is told in the log. A call made before
/// PLRAnalytics::initialize is refused with a log line. Texts are UTF-8; what is not is repaired.
///
/// Keys have 1 to 64 characters and text values 1 to 255: control characters are taken out and
/// longer ones cut, and a call with an empty one is cancelled. Keys differ by case, except those of
/// the named operations ("name", "email", "phone", "photo", "gender", "age", "cheater"), which mean
/// the same in any case and take values of their one type only.
///
/// Completion handlers run on a thread of the library, after every change made before, and may call
/// the library.
class PLR_EXPORT PLRUserCard {
 public:
  using Value = std::variant<bool, std::int64_t, double, std::string>;

  PLRUserCard() = delete;

  /// @name What every card may hold
  /// A getter answers with the empty text, `Unknown`, 0 or false where the card holds nothing, and
  /// before the start.
  /// @{

  static void setName(std::string_view name) noexcept;
  static void getName(std::function<void(const std::string&)> completionHandler) noexcept;
  static void setEmail(std::string_view email) noexcept;
  static void getEmail(std::function<void(const std::string&)> completionHandler) noexcept;
  static void setPhone(std::string_view phone) noexcept;
  static void getPhone(std::function<void(const std::string&)> completionHandler) noexcept;
  /// Where a picture of the user is found.
  static void setPhoto(std::string_view photo) noexcept;
  static void getPhoto(std::function<void(const std::string&)> completionHandler) noexcept;
  static void setGender(PLRGender gender) noexcept;
  static void getGender(std::function<void(PLRGender)> completionHandler) noexcept;
  /// In years; not checked.
  static void setAge(std::int64_t age) noexcept;
  static void getAge(std::function<void(std::int64_t)> completionHandler) noexcept;
  /// The mark that the user cheats. It survives clearUser().
  static void setCheater(bool cheater) noexcept;
  static void getCheater(std::function<void(bool)> completionHandler) noexcept;
  /// @}

  /// @name Values of the application's own
  /// @{

  /// Any integer type, `bool`, `float` and `double`, and any text. A string literal is a text. An
  /// integer above 9223372036854775807 is kept as a `double`; a number that is not finite cancels
  /// the call. Gender is set by setGender() only.
  template <class T>
  requires std::is_arithmetic_v<T>
  static void set(std::string_view key, T value) noexcept { setValue(key, PLRNumberOf(value)); }
  static void set(std::string_view key, std::string_view value) noexcept;
  static void set(std::string_view key, const char* value) noexcept { set(key, text(value)); }
  static void set(std::string_view key, const std::string& value) noexcept {
    set(key, std::string_view(value));
  }

  /// The value under any key, the named ones too; nothing where there is none.
  static void getValue(
      std::string_view key,
      std::function<void(const std::optional<Value>& value)> completionHandler) noexcept;

  /// Takes values away, whether or not they were there. An empty key costs only that key.
  static void unset(std::string_view property) noexcept;
  static void unset(const std::vector<std::string>& properties) noexcept;
  static void unset(std::initializer_list<std::string_view> properties) noexcept;

  /// Adds to a number, `value` may be negative; a key without a value takes this one. A `double` on
  /// either side makes the sum a `double`. A sum that is too large stops at the largest number of
  /// its type. Anything but a number stays as it is, with a line in the log.
  template <class T>
  requires(std::is_arithmetic_v<T> &&
           !std::is_same_v<T, bool>) static void increment(std::string_view key, T value) noexcept {
    addToValue(key, PLRNumberOf(value));
  }

  /// Takes all values away but the cheater mark, and tells the backend at once.
  static void clearUser() noexcept;
  /// @}

 private:
  static std::string_view text(const char* value) { return value ? value : std::string_view(); }

  static void setValue(std::string_view key, PLRNumber value) noexcept;
  static void addToValue(std::string_view key, PLRNumber value) noexcept;
};
