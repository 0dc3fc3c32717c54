#include "EventCalls.h"

#include <algorithm>
#include <utility>

#include "Limits.h"
#include "Rule.h"
#include "Text.h"

namespace pelorino {
namespace {

constexpr const char* networkNameLabel = "The social network name argument value";

/// Repairs the value as it is stored. What is neither a number with a fraction nor a text needs
/// none.
void checkParameter(Rule& entry, const Label& argument, AnyCodable& value) {
  if (const double* number = value.floating()) {
    entry.inInterval(argument, *number, -finiteMaximum, finiteMaximum);
  } else if (const std::string* text = value.text()) {
    std::string repaired = *text;
    entry.text(argument, repaired, 255);
    value = std::move(repaired);
  }
}

/// Of parameters whose keys have become equal the last one stays.
CustomEventCall::Params uniqueByKey(CustomEventCall::Params params) {
  std::ranges::stable_sort(params, {}, &CustomEventCall::Params::value_type::first);
  const auto sameKey = [](const auto& a, const auto& b) { return a.first == b.first; };
  params.erase(params.begin(), std::unique(params.rbegin(), params.rend(), sameKey).base());
  return params;
}

/// Repairs the parameters in place and drops those that cannot be.
void checkParameters(std::string_view method, CustomEventCall::Params& params) {
  const Label keyLabel = "The key of the parameters dictionary";
  CustomEventCall::Params kept;
  kept.reserve(params.size());
  for (auto& [rawKey, value] : params) {
    std::string key = cleaned(std::move(rawKey));
    const std::string cleanKey = key;
    const Label valueLabel("The value of the parameters dictionary by [", cleanKey, "] key");
    Rule entry(method);
    entry.notEmpty(keyLabel, key);
    entry.validType(valueLabel, value);
    if (!entry.passed()) continue;
    entry.bound(keyLabel, key, 32);
    checkParameter(entry, valueLabel, value);
    if (entry.passed()) kept.emplace_back(std::move(key), std::move(value));
  }
  params = uniqueByKey(std::move(kept));
}

void dropWhenEmpty(std::optional<std::string>& value) {
  if (value && value->empty()) value.reset();
}

}  // namespace

std::optional<CustomEventCall> ValidatorRules::validateCustomEvent(CustomEventCall call) {
  Rule rule("CustomEvent");
  const Label nameLabel = "The custom event name";
  rule.bound(nameLabel, call.name, 72);
  checkParameters(rule.method(), call.params);
  rule.notEmpty(nameLabel, call.name);
  return rule.verdict(std::move(call));
}

std::optional<SocialNetworkConnectCall> ValidatorRules::validateSocialNetworkConnect(
    SocialNetworkConnectCall call) {
  Rule rule("SocialNetworkConnect");
  rule.text(networkNameLabel, call.name, 24);
  return rule.verdict(std::move(call));
}

std::optional<SocialNetworkPostCall> ValidatorRules::validateSocialNetworkPost(
    SocialNetworkPostCall call) {
  Rule rule("SocialNetworkPost");
  rule.text(networkNameLabel, call.name, 24);
  rule.text("The post reason argument value", call.reason, 32);
  return rule.verdict(std::move(call));
}

std::optional<ReferrerCall> ValidatorRules::validateReferrer(const ReferrerCall& call) {
  Rule rule("Referrer");
  ReferrerCall kept;
  for (const auto& [property, value] : call.utmData) {
    const std::string rest = "] value of the utm data dictionary by [" + property + "] key";
    std::string repaired = value;
    Rule entry(rule.method());
    entry.namedText("The [", rest, repaired, 255);
    if (entry.passed()) kept.utmData.emplace(property, std::move(repaired));
  }
  rule.notEmpty("The referrer argument value", kept.utmData);
  return rule.verdict(std::move(kept));
}

std::optional<AdImpressionCall> ValidatorRules::validateAdImpression(AdImpressionCall call) {
  Rule rule("AdImpression");
  const Label networkLabel = "The network argument value";
  rule.bound(networkLabel, call.network, 100);
  rule.bound("The placement argument value", call.placement, 100);
  rule.bound("The unit argument value", call.unit, 100);
  rule.notEmpty(networkLabel, call.network);
  rule.inInterval("The revenue argument value", call.revenue, 0.0, finiteMaximum);
  dropWhenEmpty(call.placement);
  dropWhenEmpty(call.unit);
  return rule.verdict(std::move(call));
}

}  // namespace pelorino
