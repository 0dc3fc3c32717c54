// What the application reports.

#include <pelorino/PLRAnalytics.h>

#include <optional>
#include <utility>
#include <variant>

#include "AnyCodable.h"
#include "FrontCall.h"
#include "HostText.h"
#include "StoreValues.h"

using namespace pelorino;

namespace {

CustomEventCall::Params copied(const PLRCustomEventParameters& parameters) {
  CustomEventCall::Params values;
  values.reserve(parameters.getAllParameters().size());
  for (const auto& [key, value] : parameters.getAllParameters()) {
    values.emplace_back(key,
                        std::visit([](const auto& plain) { return AnyCodable(plain); }, value));
  }
  return values;
}

Resources copied(const Resources& resources) {
  Resources values;
  for (const auto& [name, amount] : resources) {
    values.insert_or_assign(pelorino::copied(name), amount);
  }
  return values;
}

template <class Text>
std::optional<std::string> copied(const std::optional<Text>& text) {
  if (!text) return std::nullopt;
  return pelorino::copied(*text);
}

}  // namespace

void PLRAnalytics::levelUp(std::int64_t level) noexcept {
  levelUp(level, {});
}

void PLRAnalytics::levelUp(std::int64_t level, const Resources& balances) noexcept {
  report("levelUp", &AnalyticsProxy::levelUp, [&] { return LevelUpCall{level, copied(balances)}; });
}

void PLRAnalytics::currentBalance(const Resources& balance) noexcept {
  report("currentBalance", &AnalyticsProxy::currentBalance, [&] { return copied(balance); });
}

void PLRAnalytics::customEvent(std::string_view eventName) noexcept {
  report("customEvent", &AnalyticsProxy::customEvent, [&] {
    return CustomEventCall{copied(eventName), {}};
  });
}

void PLRAnalytics::customEvent(std::string_view eventName,
                               const PLRCustomEventParameters& parameters) noexcept {
  report("customEvent", &AnalyticsProxy::customEvent, [&] {
    return CustomEventCall{copied(eventName), copied(parameters)};
  });
}

void PLRAnalytics::virtualCurrencyPayment(std::string_view purchaseId,
                                          std::string_view purchaseType,
                                          std::int64_t purchaseAmount,
                                          const Resources& resources) noexcept {
  report("virtualCurrencyPayment", &AnalyticsProxy::virtualCurrencyPayment, [&] {
    return VirtualCurrencyPaymentCall{copied(purchaseId), copied(purchaseType), purchaseAmount,
                                      copied(resources)};
  });
}

void PLRAnalytics::virtualCurrencyPayment(std::string_view purchaseId,
                                          std::string_view purchaseType,
                                          std::int64_t purchaseAmount, std::int64_t purchasePrice,
                                          std::string_view purchaseCurrency) noexcept {
  report("virtualCurrencyPayment", &AnalyticsProxy::virtualCurrencyPayment, [&] {
    return VirtualCurrencyPaymentCall{copied(purchaseId),
                                      copied(purchaseType),
                                      purchaseAmount,
                                      {{copied(purchaseCurrency), purchasePrice}}};
  });
}

void PLRAnalytics::currencyAccrual(std::string_view currencyName, std::int64_t currencyAmount,
                                   std::string_view source, PLRAccrualType accrualType) noexcept {
  report("currencyAccrual", &AnalyticsProxy::currencyAccrual, [&] {
    return CurrencyAccrualCall{copied(currencyName), currencyAmount, copied(source), accrualType};
  });
}

void PLRAnalytics::startProgressionEvent(std::string_view eventName) noexcept {
  startProgressionEvent(eventName, {});
}

void PLRAnalytics::startProgressionEvent(
    std::string_view eventName, const PLRStartProgressionEventParameters& parameters) noexcept {
  report("startProgressionEvent", &AnalyticsProxy::startProgressionEvent, [&] {
    return StartProgressionEventCall{copied(eventName),
                                     {parameters.difficulty, copied(parameters.source)}};
  });
}

void PLRAnalytics::finishProgressionEvent(std::string_view eventName) noexcept {
  PLRFinishProgressionEventParameters parameters;
  parameters.successfulCompletion = true;
  finishProgressionEvent(eventName, parameters);
}

void PLRAnalytics::finishProgressionEvent(
    std::string_view eventName, const PLRFinishProgressionEventParameters& parameters) noexcept {
  report("finishProgressionEvent", &AnalyticsProxy::finishProgressionEvent, [&] {
    return FinishProgressionEventCall{copied(eventName),
                                      {parameters.successfulCompletion, parameters.duration,
                                       copied(parameters.spent), copied(parameters.earned)}};
  });
}

void PLRAnalytics::realCurrencyPayment(std::string_view orderId, double price,
                                       std::string_view productId,
                                       std::string_view currencyCode) noexcept {
  report("realCurrencyPayment", &AnalyticsProxy::realCurrencyPayment, [&] {
    return RealCurrencyPaymentCall{copied(orderId), price, copied(productId), copied(currencyCode)};
  });
}

void PLRAnalytics::isRestoreTransactionHistoryRequired(
    std::function<void(bool)> completionHandler) noexcept {
  ask("isRestoreTransactionHistoryRequired", &AnalyticsProxy::isRestoreTransactionHistoryRequired,
      std::move(completionHandler));
}

void PLRAnalytics::subscriptionHistory(
    const std::vector<SKPaymentTransaction>& transactions) noexcept {
  report<SubscriptionHistoryCall>("subscriptionHistory", &AnalyticsProxy::subscriptionHistory, [&] {
    SubscriptionHistoryCall call;
    for (const SKPaymentTransaction& transaction : transactions) {
      call.push_back(repaired(transaction));
    }
    return call;
  });
}

void PLRAnalytics::subscriptionPayment(const SKPaymentTransaction& transaction,
                                       const SKProduct& product) noexcept {
  report<SubscriptionPaymentCall>("subscriptionPayment", &AnalyticsProxy::subscriptionPayment, [&] {
    return SubscriptionPaymentCall{repaired(transaction), repaired(product)};
  });
}

void PLRAnalytics::socialNetworkConnect(const PLRSocialNetwork& socialNetwork) noexcept {
  report("socialNetworkConnect", &AnalyticsProxy::socialNetworkConnect,
         [&] { return copied(socialNetwork.name()); });
}

void PLRAnalytics::socialNetworkPost(const PLRSocialNetwork& socialNetwork,
                                     std::string_view reason) noexcept {
  report("socialNetworkPost", &AnalyticsProxy::socialNetworkPost, [&] {
    return SocialNetworkPostCall{copied(socialNetwork.name()), copied(reason)};
  });
}

void PLRAnalytics::tutorial(std::int64_t step) noexcept {
  report("tutorial", &AnalyticsProxy::tutorial, [&] { return step; });
}

void PLRAnalytics::referrer(const std::map<PLRReferralProperty, std::string>& utmData) noexcept {
  report("referrer", &AnalyticsProxy::referrer, [&] {
    ReferrerCall call;
    for (const auto& [property, value] : utmData) {
      call.insert_or_assign(copied(property.name()), copied(value));
    }
    return call;
  });
}

void PLRAnalytics::adImpression(std::string_view network, double revenue,
                                std::optional<std::string_view> placement,
                                std::optional<std::string_view> unit) noexcept {
  report("adImpression", &AnalyticsProxy::adImpression, [&] {
    return AdImpressionCall{copied(network), revenue, copied(placement), copied(unit)};
  });
}

void PLRAnalytics::sendBufferedEvents() noexcept {
  publicCall("sendBufferedEvents", [] { Core::shared()->analyticsProxy().sendBufferedEvents(); });
}
