#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "JsonCoding.h"
#include "MessagingCategory.h"

namespace pelorino {

/// The body of a request for notification categories.
struct MessagingRequestObject {
  std::string sdkVersion;
  std::int64_t sdkCodeVersion = 0;
  std::string appVersion;
  std::int64_t categoriesVersion = 0;
  std::optional<std::string> language;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("sdkVersion", self.sdkVersion);
    visit("sdkCodeVersion", self.sdkCodeVersion);
    visit("appVersion", self.appVersion);
    visit("categoriesVersion", self.categoriesVersion);
    visit("language", self.language);
  }
};

/// The answer: what has changed since the version that the request named.
struct MessagingConfig {
  std::int64_t version = 0;
  std::vector<MessagingCategory> categories;
  std::optional<std::vector<std::string>> removed;  ///< Ids of the categories to drop.
};

/// Throws PLRError for JSON of another shape. `categories` may be null, but not missing.
void decode(const JsonView& json, MessagingConfig& config);

}  // namespace pelorino
