// The tracking operations.

#include <pelorino/PLRAnalytics.h>

#include <optional>
#include <utility>
#include <variant>

#include "AnyCodable.h"
#include "Front.h"
#include "HostText.h"
#include "StoreValues.h"

using namespace pelorino;

namespace {

/// Does not repair texts: PLRCustomEventParameters did when they were added.
CustomEventCall::Params paramsOf(const PLRCustomEventParameters& parameters) {
  CustomEventCall::Params values;
  values.reserve(parameters.getAllParameters().size());
  for (const auto& [key, value] : parameters.getAllParameters()) {
    values.emplace_back(key,
                        std::visit([](const auto& plain) { return AnyCodable(plain); }, value));
  }
  return values;
}

}  // namespace

void PLRAnalytics::levelUp(std::int64_t level) noexcept {
  levelUp(level, {});
}

void PLRAnalytics::levelUp(std::int64_t level, const Resources& balances) noexcept {
  submit("levelUp", [&] { return LevelUpCall{level, repaired(balances)}; });
}

void PLRAnalytics::currentBalance(const Resources& balance) noexcept {
  submit("currentBalance", [&] { return CurrentBalanceCall{repaired(balance)}; });
}

void PLRAnalytics::customEvent(std::string_view eventName) noexcept {
  submit("customEvent", [&] { return CustomEventCall{repaired(eventName), {}}; });
}

void PLRAnalytics::customEvent(std::string_view eventName,
                               const PLRCustomEventParameters& parameters) noexcept {
  submit("customEvent", [&] { return CustomEventCall{repaired(eventName), paramsOf(parameters)}; });
}

void PLRAnalytics::virtualCurrencyPayment(std::string_view purchaseId,
                                          std::string_view purchaseType,
                                          std::int64_t purchaseAmount,
                                          const Resources& resources) noexcept {
  submit("virtualCurrencyPayment", [&] {
    return VirtualCurrencyPaymentCall{repaired(purchaseId), repaired(purchaseType), purchaseAmount,
                                      repaired(resources)};
  });
}

void PLRAnalytics::virtualCurrencyPayment(std::string_view purchaseId,
                                          std::string_view purchaseType,
                                          std::int64_t purchaseAmount, std::int64_t purchasePrice,
                                          std::string_view purchaseCurrency) noexcept {
  submit("virtualCurrencyPayment", [&] {
    return VirtualCurrencyPaymentCall{repaired(purchaseId),
                                      repaired(purchaseType),
                                      purchaseAmount,
                                      {{repaired(purchaseCurrency), purchasePrice}}};
  });
}

void PLRAnalytics::currencyAccrual(std::string_view currencyName, std::int64_t currencyAmount,
                                   std::string_view source, PLRAccrualType accrualType) noexcept {
  submit("currencyAccrual", [&] {
    return CurrencyAccrualCall{repaired(currencyName), currencyAmount, repaired(source),
                               accrualType};
  });
}

void PLRAnalytics::startProgressionEvent(std::string_view eventName) noexcept {
  startProgressionEvent(eventName, {});
}

void PLRAnalytics::startProgressionEvent(
    std::string_view eventName, const PLRStartProgressionEventParameters& parameters) noexcept {
  submit("startProgressionEvent", [&] {
    return StartProgressionEventCall{repaired(eventName),
                                     {parameters.difficulty, repaired(parameters.source)}};
  });
}

void PLRAnalytics::finishProgressionEvent(std::string_view eventName) noexcept {
  PLRFinishProgressionEventParameters parameters;
  parameters.successfulCompletion = true;
  finishProgressionEvent(eventName, parameters);
}

void PLRAnalytics::finishProgressionEvent(
    std::string_view eventName, const PLRFinishProgressionEventParameters& parameters) noexcept {
  submit("finishProgressionEvent", [&] {
    return FinishProgressionEventCall{repaired(eventName),
                                      {parameters.successfulCompletion, parameters.duration,
                                       repaired(parameters.spent), repaired(parameters.earned)}};
  });
}

void PLRAnalytics::realCurrencyPayment(std::string_view orderId, double price,
                                       std::string_view productId,
                                       std::string_view currencyCode) noexcept {
  submit("realCurrencyPayment", [&] {
    return RealCurrencyPaymentCall{repaired(orderId), price, repaired(productId),
                                   repaired(currencyCode)};
  });
}

void PLRAnalytics::isRestoreTransactionHistoryRequired(
    std::function<void(bool)> completionHandler) noexcept {
  ask<RestoreTransactionHistoryQuery>("isRestoreTransactionHistoryRequired",
                                      std::move(completionHandler));
}

void PLRAnalytics::subscriptionHistory(
    const std::vector<SKPaymentTransaction>& transactions) noexcept {
  submit("subscriptionHistory", [&] {
    SubscriptionHistoryCall call;
    for (const SKPaymentTransaction& transaction : transactions) {
      call.transactions.push_back(repaired(transaction));
    }
    return call;
  });
}

void PLRAnalytics::subscriptionPayment(const SKPaymentTransaction& transaction,
                                       const SKProduct& product) noexcept {
  submit("subscriptionPayment", [&] {
    return SubscriptionPaymentCall{repaired(transaction), repaired(product)};
  });
}

void PLRAnalytics::socialNetworkConnect(const PLRSocialNetwork& socialNetwork) noexcept {
  submit("socialNetworkConnect",
         [&] { return SocialNetworkConnectCall{repaired(socialNetwork.name())}; });
}

void PLRAnalytics::socialNetworkPost(const PLRSocialNetwork& socialNetwork,
                                     std::string_view reason) noexcept {
  submit("socialNetworkPost", [&] {
    return SocialNetworkPostCall{repaired(socialNetwork.name()), repaired(reason)};
  });
}

void PLRAnalytics::tutorial(std::int64_t step) noexcept {
  submit("tutorial", [&] { return TutorialCall{step}; });
}

void PLRAnalytics::referrer(const std::map<PLRReferralProperty, std::string>& utmData) noexcept {
  submit("referrer", [&] {
    ReferrerCall call;
    for (const auto& [property, value] : utmData) {
      call.utmData.insert_or_assign(repaired(property.name()), repaired(value));
    }
    return call;
  });
}

void PLRAnalytics::adImpression(std::string_view network, double revenue,
                                std::optional<std::string_view> placement,
                                std::optional<std::string_view> unit) noexcept {
  submit("adImpression", [&] {
    return AdImpressionCall{repaired(network), revenue, repaired(placement), repaired(unit)};
  });
}

void PLRAnalytics::sendBufferedEvents() noexcept {
  submit("sendBufferedEvents", [] { return SendBufferedEventsCall(); });
}
