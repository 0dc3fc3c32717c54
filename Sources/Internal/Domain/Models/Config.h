#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "AnyCodable.h"
#include "JsonCoding.h"

namespace pelorino {

/// Events that the backend has excluded: they are not reported.
struct ExcludeEvents {
  std::int64_t version = 0;
  std::optional<bool> all;
  /// From an event's code to the excluded arguments; an empty list excludes the whole event.
  std::optional<std::map<std::string, std::vector<AnyCodable>>> events;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("version", self.version);
    visit("all", self.all);
    visit("events", self.events);
  }
};

/// Properties of the user, as the backend sees them. They are stored, but nothing reads them.
struct BackendUserProperties {
  std::optional<std::string> country;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("country", self.country);
  }
};

/// The backend's settings for a project. The backend's answer and the stored column have the same
/// JSON. Periods and timeouts are in milliseconds.
struct Config {
  std::int64_t timeForRequest = 120'000;
  std::int64_t countForRequest = 10;   ///< Events of a user that start a delivery.
  std::int64_t eventParamsCount = 20;  ///< Largest number of parameters of a custom event.
  std::int64_t sessionTimeout = 600'000;
  std::int64_t serverTime = 0;  ///< Milliseconds since 1970.
  std::int64_t aliveTimeout = 300'000;
  bool userCounting = true;  ///< False: one account for the device, whatever the user's name.
  std::optional<std::int64_t> currencyAggregationTimeout = 360'000;
  std::optional<std::vector<std::string>> sbsBundles;  ///< Store products to report.
  std::optional<std::int64_t> sbsConfigVersion = 0;
  std::optional<ExcludeEvents> exclude;
  std::optional<BackendUserProperties> userProperties;

  /// The defaults above. The caller sets `serverTime`.
  [[nodiscard]] static Config defaulConfiguration() { return {}; }

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timeForRequest", self.timeForRequest);
    visit("countForRequest", self.countForRequest);
    visit("eventParamsCount", self.eventParamsCount);
    visit("sessionTimeout", self.sessionTimeout);
    visit("serverTime", self.serverTime);
    visit("aliveTimeout", self.aliveTimeout);
    visit("userCounting", self.userCounting);
    visit("currencyAggregationTimeout", self.currencyAggregationTimeout);
    visit("sbsBundles", self.sbsBundles);
    visit("sbsConfigVersion", self.sbsConfigVersion);
    visit("exclude", self.exclude);
    visit("userProperties", self.userProperties);
  }
};

/// A configuration from the backend, or the default one.
struct ConfigAnswer {
  Config config;
  bool isDefault;  ///< True when the backend gave no answer.
};

/// The versions that the client has; the body of the configuration request.
struct Versions {
  std::string sdkVersion;
  std::int64_t sdkCodeVersion = 0;
  std::optional<std::string> appVersion;
  std::optional<std::string> appBuildVersion;  ///< Not sent.
  std::optional<std::int64_t> excludeVersion;
  std::optional<std::int64_t> sbsConfigVersion;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("sdkVersion", self.sdkVersion);
    visit("sdkCodeVersion", self.sdkCodeVersion);
    visit(Field("appVersion").nullWhenAbsent(), self.appVersion);
    visit("excludeVersion", self.excludeVersion);
    visit("sbsConfigVersion", self.sbsConfigVersion);
  }
};

}  // namespace pelorino
