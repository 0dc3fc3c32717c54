#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "JsonCoding.h"

namespace pelorino {

/// What the client tells the backend about itself; the body of the configuration request.
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
