#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "AnyCodable.h"
#include "Call.h"

// Events that the host tells as they are: custom, social, of referral and of advertisements.

namespace pelorino {

struct CustomEventCall;
struct SocialNetworkConnectCall;
struct SocialNetworkPostCall;
struct ReferrerCall;
struct AdImpressionCall;

namespace ValidatorRules {
/// Bad parameters are left out; only a bad name rejects.
[[nodiscard]] std::optional<CustomEventCall> validateCustomEvent(CustomEventCall call);
[[nodiscard]] std::optional<SocialNetworkConnectCall> validateSocialNetworkConnect(
    SocialNetworkConnectCall call);
[[nodiscard]] std::optional<SocialNetworkPostCall> validateSocialNetworkPost(
    SocialNetworkPostCall call);
[[nodiscard]] std::optional<ReferrerCall> validateReferrer(const ReferrerCall& call);
[[nodiscard]] std::optional<AdImpressionCall> validateAdImpression(AdImpressionCall call);
}  // namespace ValidatorRules

struct CustomEventCall {
  /// By key, in order. A list, since it is one allocation for the caller's thread, and one to free
  /// for the queue.
  using Params = std::vector<std::pair<std::string, AnyCodable>>;

  std::string name;
  Params params;

  static constexpr const char* label = "customEvent(_:_:)";
  static constexpr auto rule = ValidatorRules::validateCustomEvent;
  static constexpr auto exclusion = Exclusion::withGiven("ce", &CustomEventCall::name);
};

struct SocialNetworkConnectCall {
  std::string name;

  static constexpr const char* label = "socialNetworkConnect(_:)";
  static constexpr auto rule = ValidatorRules::validateSocialNetworkConnect;
  static constexpr auto exclusion = Exclusion::withRepaired("sc", &SocialNetworkConnectCall::name);
};

struct SocialNetworkPostCall {
  std::string name;
  std::string reason;

  static constexpr const char* label = "socialNetworkPost(_:_:)";
  static constexpr auto rule = ValidatorRules::validateSocialNetworkPost;
  static constexpr auto exclusion = Exclusion::withRepaired("sp", &SocialNetworkPostCall::name);
};

struct ReferrerCall {
  /// Values by the name of the referral property.
  std::map<std::string, std::string> utmData;

  static constexpr const char* label = "referrer(_:)";
  static constexpr auto rule = ValidatorRules::validateReferrer;
  static constexpr auto exclusion = Exclusion::ofEvent("rf");
};

struct AdImpressionCall {
  std::string network;
  double revenue = 0.0;
  std::optional<std::string> placement;
  std::optional<std::string> unit;

  static constexpr const char* label = "adImpression(_:_:_:_:)";
  static constexpr auto rule = ValidatorRules::validateAdImpression;
  static constexpr auto exclusion = Exclusion::ofEvent("adrv");
};

struct SendBufferedEventsCall {
  static constexpr const char* label = "sendBufferedEvents()";
  static constexpr auto rule = noRule;
  static constexpr auto exclusion = Exclusion::never;
};

}  // namespace pelorino
