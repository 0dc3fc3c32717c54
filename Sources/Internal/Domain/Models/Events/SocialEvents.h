#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// Where the user came from.
struct Referral {
  static constexpr std::string_view code = "rf";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::optional<std::string> source;
  std::optional<std::string> campaign;
  std::optional<std::string> content;
  std::optional<std::string> medium;
  std::optional<std::string> term;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("source", self.source);
    visit("campaign", self.campaign);
    visit("content", self.content);
    visit("medium", self.medium);
    visit("term", self.term);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// The user has connected a social network.
struct SocialNetworkConnect {
  static constexpr std::string_view code = "sc";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string socialNetwork;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("socialNetwork", self.socialNetwork);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// The user has posted in a social network.
struct SocialNetworkPost {
  static constexpr std::string_view code = "sp";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string socialNetwork;
  std::string postReason;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("socialNetwork", self.socialNetwork);
    visit("postReason", self.postReason);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
