#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pelorino {

/// Why a file of an earlier generation cannot be used.
struct LegacyDataError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// One value of a property list. It borrows the list, which outlives it.
///
/// Threads: one at a time.
class PropertyValue final {
 public:
  explicit PropertyValue(void* node = nullptr) : node_(node) {}

  /// False for the value of a key that is missing. Such a value is of no kind.
  [[nodiscard]] explicit operator bool() const { return node_ != nullptr; }

  // The value if it is of this kind. Texts that are no UTF-8 are repaired.
  [[nodiscard]] std::optional<std::string> text() const;
  [[nodiscard]] std::optional<bool> boolean() const;
  [[nodiscard]] std::optional<std::int64_t> integer() const;
  [[nodiscard]] std::optional<double> real() const;
  /// A reference to another object of a keyed archive.
  [[nodiscard]] std::optional<std::uint64_t> reference() const;

  [[nodiscard]] bool isDictionary() const;
  /// The value of a key of a dictionary.
  [[nodiscard]] PropertyValue operator[](const char* key) const;

  [[nodiscard]] bool isList() const;
  /// The number of elements of a list; 0 for other values.
  [[nodiscard]] std::uint32_t size() const;
  [[nodiscard]] PropertyValue at(std::uint32_t index) const;

 private:
  void* node_;
};

/// A property list in binary or XML form. The text is foreign input: what it may cost is limited
/// before it is read, since the reader copies what a list refers to again and again.
class PropertyList final {
 public:
  /// Throws LegacyDataError for what is no property list, or is too large or nested too deep.
  explicit PropertyList(std::string_view bytes);

  [[nodiscard]] PropertyValue root() const { return PropertyValue(root_.get()); }

  // Limits of what a list holds once every reference has been replaced by a copy.
  static constexpr std::uint64_t maximalValues = 100'000;
  static constexpr std::uint64_t maximalTextBytes = std::uint64_t{8} * 1024 * 1024;
  static constexpr int maximalDepth = 32;

 private:
  std::unique_ptr<void, void (*)(void*)> root_;
};

}  // namespace pelorino
