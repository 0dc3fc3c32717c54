#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "JsonCoding.h"

namespace pelorino {

/// The outcome of one request for the numbers that the backend gives a device and its user.
struct BackendIdentifiers {
  /// Status 200. A value that the backend left out is absent.
  struct Identifiers {
    std::optional<std::int64_t> pelorinoId;
    std::optional<std::int64_t> crossPlatformPelorinoId;
    std::optional<std::int64_t> pelorinoIdTimestamp;

    /// For the log: a line for each value that is there.
    [[nodiscard]] std::string description() const {
      std::string text;
      if (pelorinoId) text += "\tpelorinoId: " + std::to_string(*pelorinoId);
      if (crossPlatformPelorinoId) {
        text += "\n\tcrossPlatformPelorinoId: " + std::to_string(*crossPlatformPelorinoId);
      }
      if (pelorinoIdTimestamp) {
        text += "\n\tpelorinoIdTimestamp: " + std::to_string(*pelorinoIdTimestamp);
      }
      return text;
    }

    template <class Self, class Visit>
    static void describe(Self& self, Visit& visit) {
      visit("pelorinoId", self.pelorinoId);
      visit("crossPlatformPelorinoId", self.crossPlatformPelorinoId);
      visit("pelorinoIdTimestamp", self.pelorinoIdTimestamp);
    }
  };

  /// Status 202: ask again after this many milliseconds.
  struct RetryAfter {
    std::int64_t retryAfter = 0;

    template <class Self, class Visit>
    static void describe(Self& self, Visit& visit) {
      visit("retryAfter", self.retryAfter);
    }
  };

  /// Anything unexpected; the text says what.
  struct Error {
    std::string text;
  };

  /// Status 422: the backend refuses. Do not ask again.
  struct DoNotRetry {};

  /// The body of the request.
  struct Attempt {
    std::int64_t attempt = 1;

    template <class Self, class Visit>
    static void describe(Self& self, Visit& visit) {
      visit("attempt", self.attempt);
    }
  };

  using Outcome = std::variant<Identifiers, RetryAfter, Error, DoNotRetry>;
};

}  // namespace pelorino
