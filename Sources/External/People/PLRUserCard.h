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

/// The card of the active user: named values that describe who is playing. Each user has an own
/// card, which is stored on the device. The backend gets the whole card at each start. Later it
/// gets the changes, together with stored events (PLRAnalytics::sendBufferedEvents).
///
/// Call it from any thread. An operation copies its arguments, hands the work to a queue of the
/// library and returns at once. The queue applies the calls in the order in which they were made.
/// Nothing throws and there are no error results: a log line tells what was repaired, refused or
/// failed. A call before PLRAnalytics::initialize is refused with a log line. Texts are UTF-8; bad
/// bytes are replaced.
///
/// Keys have 1 to 64 characters and text values 1 to 255. Control characters are removed, longer
/// texts are cut, and an empty text cancels the call. The seven reserved keys ("name", "email",
/// "phone", "photo", "gender", "age", "cheater") mean the same in upper and lower case, and each
/// takes values of one type only. All other keys are case-sensitive.
///
/// Completion handlers run on a thread of the library and may call the library. They see every
/// change made before them. An empty handler is allowed.
class PLR_EXPORT PLRUserCard {
 public:
  using Value = std::variant<bool, std::int64_t, double, std::string>;

  PLRUserCard() = delete;

  /// @name Reserved keys
  /// A getter answers with the empty text, `Unknown`, 0 or false when the card has no value, and
  /// before the start.
  /// @{

  static void setName(std::string_view name) noexcept;
  static void getName(std::function<void(const std::string&)> completionHandler) noexcept;
  static void setEmail(std::string_view email) noexcept;
  static void getEmail(std::function<void(const std::string&)> completionHandler) noexcept;
  static void setPhone(std::string_view phone) noexcept;
  static void getPhone(std::function<void(const std::string&)> completionHandler) noexcept;
  /// The address of a picture of the user; not checked.
  static void setPhoto(std::string_view photo) noexcept;
  static void getPhoto(std::function<void(const std::string&)> completionHandler) noexcept;
  static void setGender(PLRGender gender) noexcept;
  static void getGender(std::function<void(PLRGender)> completionHandler) noexcept;
  /// In years; not checked.
  static void setAge(std::int64_t age) noexcept;
  static void getAge(std::function<void(std::int64_t)> completionHandler) noexcept;
  /// Marks the user as a cheater. clearUser() keeps the mark.
  static void setCheater(bool cheater) noexcept;
  static void getCheater(std::function<void(bool)> completionHandler) noexcept;
  /// @}

  /// @name Any key
  /// @{

  /// Takes any integer type, `bool`, `float`, `double` or text; a string literal is a text. An
  /// integer above 9223372036854775807 becomes a `double`. A number that is not finite cancels the
  /// call. "gender" is refused here: use setGender().
  template <class T>
  requires std::is_arithmetic_v<T>
  static void set(std::string_view key, T value) noexcept { setValue(key, PLRNumberOf(value)); }
  static void set(std::string_view key, std::string_view value) noexcept;
  static void set(std::string_view key, const char* value) noexcept { set(key, text(value)); }
  static void set(std::string_view key, const std::string& value) noexcept {
    set(key, std::string_view(value));
  }

  /// Answers with the value of any key, also of a reserved one; absent when there is none.
  static void getValue(
      std::string_view key,
      std::function<void(const std::optional<Value>& value)> completionHandler) noexcept;

  /// Removes values and reports that, even if there were none. An empty key is dropped and the
  /// other keys stay.
  static void unset(std::string_view property) noexcept;
  static void unset(const std::vector<std::string>& properties) noexcept;
  static void unset(std::initializer_list<std::string_view> properties) noexcept;

  /// Adds `value`, which may be negative, to a number. A key without a value gets `value`. The sum
  /// is a `double` if either side is one. A sum beyond the limits of its type stops at the limit.
  /// A stored value that is not a number does not change; a log line tells so.
  template <class T>
  requires(std::is_arithmetic_v<T> &&
           !std::is_same_v<T, bool>) static void increment(std::string_view key, T value) noexcept {
    addToValue(key, PLRNumberOf(value));
  }

  /// Removes all values but the cheater mark, and sends that at once.
  static void clearUser() noexcept;
  /// @}

 private:
  static std::string_view text(const char* value) { return value ? value : std::string_view(); }

  static void setValue(std::string_view key, PLRNumber value) noexcept;
  static void addToValue(std::string_view key, PLRNumber value) noexcept;
};
