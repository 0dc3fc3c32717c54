#pragma once

#include <pelorino/PLRExport.h>

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>

/// A property of where the user came from: the key of `PLRAnalytics::referrer`. Two properties of
/// the same name are equal. Only the five shared ones below are reported.
///
/// Threads: the shared ones, any.
class PLR_EXPORT PLRReferralProperty {
 public:
  explicit PLRReferralProperty(std::string name) : name_(std::move(name)) {}

  [[nodiscard]] const std::string& name() const { return name_; }

  /// "name: <name>"
  [[nodiscard]] std::string description() const { return "name: " + name_; }

  friend bool operator==(const PLRReferralProperty&, const PLRReferralProperty&) = default;
  friend auto operator<=>(const PLRReferralProperty&, const PLRReferralProperty&) = default;

  [[nodiscard]] static const PLRReferralProperty& source() { return shared("source"); }
  [[nodiscard]] static const PLRReferralProperty& campaign() { return shared("campaign"); }
  [[nodiscard]] static const PLRReferralProperty& content() { return shared("content"); }
  [[nodiscard]] static const PLRReferralProperty& medium() { return shared("medium"); }
  [[nodiscard]] static const PLRReferralProperty& term() { return shared("term"); }

 private:
  /// The one instance of this name. It is made on first use and never destroyed.
  static const PLRReferralProperty& shared(const char* name);

  std::string name_;
};

template <>
struct std::hash<PLRReferralProperty> {
  std::size_t operator()(const PLRReferralProperty& property) const {
    return std::hash<std::string>()(property.name());
  }
};
