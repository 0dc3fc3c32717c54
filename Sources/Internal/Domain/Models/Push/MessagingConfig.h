#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "JsonCoding.h"

namespace pelorino {

/// A button of a notification. The library does not interpret `activationMode`.
struct MassagingButtonInfo {
  std::string id;
  std::string text;
  std::optional<std::string> activationMode;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("id", self.id);
    visit("text", self.text);
    visit(Field("activationMode").nullWhenAbsent(), self.activationMode);
  }
};

/// A notification category: the buttons that a push may show.
struct MessagingCategory {
  std::int64_t idKey = -1;  ///< The row's id; never part of the JSON.
  std::string id;           ///< The name that the backend gives it.
  std::vector<MassagingButtonInfo> buttons;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("id", self.id);
    visit("buttons", self.buttons);
  }
};

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

/// The answer to it: the changes since the version that the request named.
struct MessagingConfig {
  std::int64_t version = 0;
  std::vector<MessagingCategory> categories;
  std::optional<std::vector<std::string>> removed;  ///< Ids of the categories to drop.
};

/// Throws PLRError for JSON of another form. `categories` may be null, but not missing.
void decode(const JsonView& json, MessagingConfig& config);

}  // namespace pelorino
